#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "tests/worlds/simulation/quiet_console.h"

namespace Morquil::Testing::Worlds {

namespace {

/// Opened once, before the first test: the conversations are very many, and none of them may leak anything.
const int nullDevice = _open("NUL", _O_WRONLY);

}  // namespace

QuietConsole::QuietConsole() : console_(_dup(_fileno(stdout))) {
    std::fflush(stdout);
    _dup2(nullDevice, _fileno(stdout));
}

QuietConsole::~QuietConsole() {
    std::fflush(stdout);
    _dup2(console_, _fileno(stdout));
    _close(console_);
}

}  // namespace Morquil::Testing::Worlds
