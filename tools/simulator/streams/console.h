#pragma once

#include <string>

#include "simulator/streams/background_writer.h"

namespace Morquil::Simulator {

/// Standard output and standard error. If they have no reader, the program carries on and drops lines. A line says so
/// once there is a reader again.
class Console {
public:
    /// How many bytes may wait for a reader, besides those in the system's pipe.
    static constexpr std::size_t pendingLimit = 65536;

    Console();

    /// Prints whole lines on standard output.
    void Print(std::string lines) { writer_.Write({std::move(lines), standardOutput}); }
    /// Prints a line on standard error.
    void PrintError(const std::string& text);
    /// Waits until everything is written, but not beyond `deadline`.
    void Finish(BackgroundWriter::TimePoint deadline) { writer_.Finish(deadline); }

private:
    static constexpr int standardOutput = 1;
    static constexpr int standardError = 2;

    // One writer for both streams, so that a terminal shows their lines in order.
    BackgroundWriter writer_;
};

}  // namespace Morquil::Simulator
