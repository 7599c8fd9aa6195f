#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "MorquilDelivery.h"

namespace Morquil {

/// Prints a whole line, with its line feed: on standard output, unless the host has chosen otherwise.
///
/// Standard output: after what the host has printed there. Never waits for a reader: text that cannot be written at
/// once is dropped, and when writing works again a line reports how many bytes were dropped. Prints nothing if standard
/// output was closed when the library was loaded: the text would go into the next file that the host opens.
/// Threads: any.
void Print(std::string_view line);

/// Prints what one connection receives, in the pieces in which it arrives. An observer is called for whole lines; when
/// another output is chosen in the middle of a line, the line continues there.
/// Threads: one at a time.
class ReceivedText {
public:
    void Print(std::string_view piece);
    /// Prints an unfinished line: nothing more of it arrives.
    void Finish();

private:
    static constexpr std::size_t longestLine = 4096;

    void PrintWholeLines();
    static std::size_t FirstLineLength(std::string_view text);

    std::string unfinished_;
};

/// Chooses where the text of the whole process goes. Arguments and results are those of `IMorquilConsole`.
/// Threads: any.
HRESULT SetConsoleOutput(_MorquilConsoleMode mode, IMorquilConsoleObserver* observer);

}  // namespace Morquil
