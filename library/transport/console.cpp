#include "transport/console.h"

#include <algorithm>
#include <atomic>
#include <new>

#include "core/static_lock.h"
#include "transport/console_observer.h"
#include "transport/piece_printer.h"
#include "transport/standard_output.h"

namespace Morquil {
namespace {

using QRN::Core::StaticLock;
using QRN::Core::StaticLockHold;

const bool wasOpenAtLoad = IsStandardOutputOpen();

constinit StaticLock printerLock;
constinit PiecePrinter printer GUARDED_BY(printerLock){&WriteAtOnce};

constinit std::atomic<_MorquilConsoleMode> output = morquilConsoleStandardOutput;
/// Exists once a host has chosen an observer. Never destroyed: connection threads may print until the process ends.
constinit std::atomic<ConsoleObserver*> chosenObserver = nullptr;

void PrintOnStandardOutput(std::string_view text) {
    if (wasOpenAtLoad) {
        const StaticLockHold lock(printerLock);
        printer.Print(text);
    }
}

void CallObserver(std::string_view line) {
    if (ConsoleObserver* const observer = chosenObserver) {
        observer->CallWith(line.substr(0, line.find_last_not_of("\r\n") + 1));
    }
}

/// Throws: std::bad_alloc; nothing has changed.
void ChooseObserver(IMorquilConsoleObserver* observer) {
    static constinit StaticLock choosing;
    {
        const StaticLockHold lock(choosing);
        if (chosenObserver == nullptr && observer != nullptr) {
            chosenObserver = new ConsoleObserver();
        }
    }
    if (ConsoleObserver* const chosen = chosenObserver) {
        chosen->Set(observer);
    }
}

}  // namespace

void Print(std::string_view line) {
    if (output == morquilConsoleStandardOutput) {
        PrintOnStandardOutput(line);
    } else if (output == morquilConsoleObserver) {
        CallObserver(line);
    }
}

void ReceivedText::Print(std::string_view piece) {
    if (output != morquilConsoleObserver) {
        unfinished_.clear();
        Morquil::Print(piece);
        return;
    }
    try {
        unfinished_ += piece;
    } catch (const std::bad_alloc&) {
        return;  // the text is lost, the connection is not
    }
    CallForWholeLines();
}

void ReceivedText::CallForWholeLines() {
    std::string_view rest = unfinished_;
    for (std::size_t end = rest.find('\n'); end != std::string_view::npos || rest.size() >= longestLine;
         end = rest.find('\n')) {
        const std::size_t length = std::min(end == std::string_view::npos ? end : end + 1, longestLine);
        CallObserver(rest.substr(0, length));
        rest.remove_prefix(length);
    }
    unfinished_.erase(0, unfinished_.size() - rest.size());
}

void ReceivedText::Finish() {
    if (!unfinished_.empty()) {
        CallObserver(unfinished_);
        unfinished_.clear();
    }
}

HRESULT SetConsoleOutput(_MorquilConsoleMode mode, IMorquilConsoleObserver* observer) {
    const bool isKnown =
        mode == morquilConsoleStandardOutput || mode == morquilConsoleSilent || mode == morquilConsoleObserver;
    if (!isKnown || (mode == morquilConsoleObserver) != (observer != nullptr)) {
        return E_INVALIDARG;
    }
    try {
        ChooseObserver(observer);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    output = mode;
    return S_OK;
}

}  // namespace Morquil
