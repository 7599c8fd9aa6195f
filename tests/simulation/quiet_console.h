#pragma once

#include <cstdio>

namespace Morquil::Simulation {

/// Keeps to itself what the library writes to standard output: every byte that a device says, which in thousands of
/// conversations is too much for a log.
class QuietConsole {
public:
    QuietConsole();
    ~QuietConsole();
    QuietConsole(const QuietConsole&) = delete;
    QuietConsole& operator=(const QuietConsole&) = delete;

private:
    const int console_;
};

}  // namespace Morquil::Simulation
