// Where the library's own text goes.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "morquil/library.hpp"
#include "morquil/observers.hpp"

namespace morquil {

namespace detail {

class ConsoleObserver final : public HostObject<IMorquilConsoleObserver> {
public:
    explicit ConsoleObserver(std::function<void(const std::string&)> handler) : handler_(std::move(handler)) {}

    STDMETHODIMP Line(BSTR text) noexcept override {
        const CallbackScope scope;
        handler_(Utf8FromUtf16({text, SysStringLen(text)}));
        return S_OK;
    }

private:
    const std::function<void(const std::string&)> handler_;
};

inline void ChooseOutput(_MorquilConsoleMode mode, IMorquilConsoleObserver* observer) {
    const Pointer<IMorquilDiscovery> discovery = GetDiscovery();
    const auto console = AskForDelivery<IMorquilConsole>(discovery.Get(), "Console::SetOutput");
    Check("Console::SetOutput", console->SetOutput(mode, observer), CallKind::Set);
}

}  // namespace detail

/// The library prints its messages, and everything that devices send, to standard output. From here on it prints
/// nothing, and standard output belongs to the program. Like the two functions below, this is for all devices of the
/// process.
inline void SilenceLibrary() {
    detail::ChooseOutput(morquilConsoleSilent, nullptr);
}

/// Passes what the library prints to `handler`, line by line, without line ends. It is called on the library's threads,
/// possibly on several at once, until another output is chosen; once that function has returned, it no longer is.
inline void SetLibraryOutput(std::function<void(const std::string& line)> handler) {
    const auto observer = Pointer<IMorquilConsoleObserver>::Adopt(new detail::ConsoleObserver(std::move(handler)));
    detail::ChooseOutput(morquilConsoleObserver, observer.Get());
}

/// The library prints to standard output again.
inline void RestoreLibraryOutput() {
    detail::ChooseOutput(morquilConsoleStandardOutput, nullptr);
}

}  // namespace morquil
