#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "command/output/own_output.h"
#include "command/output/traced_lines.h"

namespace Morquil::Command {
namespace {

constexpr int standardOutput = 1;
constexpr int standardError = 2;
constexpr unsigned pipeBytes = 64 * 1024;
constexpr std::size_t longestWrite = 16 * 1024;

bool WriteAll(int file, std::string_view text) {
    while (!text.empty()) {
        const int written = _write(file, text.data(), static_cast<unsigned>(std::min(text.size(), longestWrite)));
        if (written <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// The C library has no single error number for these.
bool IsOfBrokenPipe(unsigned long error) {
    return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
}

}  // namespace

class OwnOutput::System {
public:
    System() : own_(_dup(standardOutput)) {
        _setmode(own_, _O_BINARY);
        // Texts are UTF-8.
        SetConsoleOutputCP(CP_UTF8);
        SendLibraryTo(OpenNull());
    }
    ~System() {
        Finish();
        _close(own_);
    }
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    void Trace() {
        std::array<int, 2> ends{};
        if (_pipe(ends.data(), pipeBytes, _O_BINARY | _O_NOINHERIT) == 0) {
            SendLibraryTo(ends[1]);
            reader_ = std::thread([from = ends[0]] { Show(from); });
        }
    }

    Written Write(std::string_view text) {
        if (WriteAll(own_, text)) {
            return Written::All;
        }
        hasReader_ = !IsOfBrokenPipe(_doserrno);
        return hasReader_ ? Written::Failed : Written::NoReader;
    }
    bool HasReader() const { return hasReader_; }

    /// A console shows colours only if that mode can be enabled.
    bool IsTerminal() const {
        const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(own_));
        DWORD mode = 0;
        return GetConsoleMode(console, &mode) != 0 &&
               SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
    }

    void Finish() {
        std::fflush(stdout);
        SendLibraryTo(OpenNull());
        if (reader_.joinable()) {
            reader_.join();
        }
    }

private:
    static int OpenNull() { return _open("NUL", _O_WRONLY | _O_BINARY); }

    // The library may have its own C runtime, which uses the system's handle.
    static void SendLibraryTo(int file) {
        if (file >= 0 && file != standardOutput) {
            _dup2(file, standardOutput);
            _close(file);
            SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(standardOutput)));
        }
    }

    // Runs until the last writer has closed the pipe.
    static void Show(int from) {
        TracedLines lines;
        std::array<char, 4096> piece{};
        for (int count = _read(from, piece.data(), piece.size()); count > 0;
             count = _read(from, piece.data(), piece.size())) {
            WriteAll(standardError, lines.Add({piece.data(), static_cast<std::size_t>(count)}));
        }
        WriteAll(standardError, lines.Rest());
        _close(from);
    }

    const int own_;
    std::atomic<bool> hasReader_{true};
    std::thread reader_;
};

OwnOutput::OwnOutput() : system_(std::make_unique<System>()) {}
OwnOutput::~OwnOutput() = default;
void OwnOutput::Trace() {
    system_->Trace();
}
Written OwnOutput::Write(std::string_view text) {
    return system_->Write(text);
}
bool OwnOutput::HasReader() const {
    return system_->HasReader();
}
bool OwnOutput::IsTerminal() const {
    return system_->IsTerminal();
}
void OwnOutput::Finish() {
    system_->Finish();
}

}  // namespace Morquil::Command
