#pragma once

#include <cstdio>

namespace Morquil::Testing::Worlds {

/// Discards what the library writes to standard output: every byte that a device sends, which in thousands of
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

}  // namespace Morquil::Testing::Worlds
