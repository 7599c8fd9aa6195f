#include "transport/console.h"

#include <atomic>
#include <cstddef>
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
/// Exists once a host has chosen an output. Never destroyed: connection threads may print until the process ends.
constinit std::atomic<ConsoleObserver*> chosenObserver = nullptr;

void PrintOnStandardOutput(std::string_view text) {
    if (wasOpenAtLoad) {
        const StaticLockHold lock(printerLock);
        printer.Print(text);
    }
}

/// A line without the line feed, or carriage return and line feed, that ends it.
std::string_view WithoutEnd(std::string_view line) {
    for (const char end : {'\n', '\r'}) {
        if (!line.empty() && line.back() == end) {
            line.remove_suffix(1);
        }
    }
    return line;
}

/// Returns: false if the output is being changed.
bool TryPrint(std::string_view line) {
    switch (output) {
        case morquilConsoleStandardOutput:
            PrintOnStandardOutput(line);
            return true;
        case morquilConsoleSilent:
            return true;
        case morquilConsoleObserver:
            return chosenObserver.load()->CallWith(WithoutEnd(line));
    }
    return true;
}

/// Throws: std::bad_alloc.
ConsoleObserver& ChosenObserver() {
    static constinit StaticLock making;
    const StaticLockHold lock(making);
    if (chosenObserver == nullptr) {
        chosenObserver = new ConsoleObserver(output);
    }
    return *chosenObserver;
}

}  // namespace

void Print(std::string_view line) {
    while (!TryPrint(line)) {
    }
}

void ReceivedText::Print(std::string_view piece) {
    const _MorquilConsoleMode mode = output;
    if (mode != morquilConsoleObserver) {
        Finish();
        if (mode == morquilConsoleStandardOutput) {
            PrintOnStandardOutput(piece);
        }
        return;
    }
    try {
        unfinished_ += piece;
    } catch (const std::bad_alloc&) {
        return;  // the text is lost, the connection is not
    }
    PrintWholeLines();
}

void ReceivedText::PrintWholeLines() {
    std::string_view rest = unfinished_;
    for (std::size_t length = FirstLineLength(rest); length != 0; length = FirstLineLength(rest)) {
        Morquil::Print(rest.substr(0, length));
        rest.remove_prefix(length);
    }
    unfinished_.erase(0, unfinished_.size() - rest.size());
}

/// The length of the first line in `text` with its end, or of the piece to cut off a longer one; 0 while more may
/// belong to it.
std::size_t ReceivedText::FirstLineLength(std::string_view text) {
    const std::size_t end = text.find('\n');
    if (WithoutEnd(text.substr(0, end)).size() <= longestLine) {
        return end == std::string_view::npos ? 0 : end + 1;
    }
    constexpr std::size_t longestCharacter = 4;
    const auto isInsideCharacter = [&](std::size_t place) { return (text[place] & 0xC0) == 0x80; };
    std::size_t length = longestLine;
    while (isInsideCharacter(length) && length > longestLine - longestCharacter) {
        --length;
    }
    return isInsideCharacter(length) ? longestLine : length;
}

void ReceivedText::Finish() {
    if (!unfinished_.empty()) {
        Morquil::Print(unfinished_);
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
        ChosenObserver().Set(mode, observer);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    return S_OK;
}

}  // namespace Morquil
