#pragma once

#include <string>

#include "simulator/streams/background_writer.h"

namespace Morquil::Simulator {

/// Standard output and standard error. When nobody reads them the program goes on, and lines are dropped; a line says
/// so when somebody reads again.
class Console {
public:
    /// How many bytes wait for a reader, besides those in a pipe of the system.
    static constexpr std::size_t pendingLimit = 65536;

    Console();

    /// Whole lines on standard output.
    void Print(std::string lines) { writer_.Write({std::move(lines), standardOutput}); }
    /// A line on standard error.
    void Complain(const std::string& text);
    /// Waits until everything is written, at most until `deadline`.
    void Finish(BackgroundWriter::TimePoint deadline) { writer_.Finish(deadline); }

private:
    static constexpr int standardOutput = 1;
    static constexpr int standardError = 2;

    // One writer for both streams: on a terminal people see their lines in order.
    BackgroundWriter writer_;
};

}  // namespace Morquil::Simulator
