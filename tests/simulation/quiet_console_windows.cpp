#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "tests/simulation/quiet_console.h"

namespace Morquil::Simulation {

namespace {

/// Opened once: there are very many conversations.
int NullDevice() {
    static const int device = _open("NUL", _O_WRONLY);
    return device;
}

}  // namespace

QuietConsole::QuietConsole() : console_(_dup(_fileno(stdout))) {
    std::fflush(stdout);
    _dup2(NullDevice(), _fileno(stdout));
}

QuietConsole::~QuietConsole() {
    std::fflush(stdout);
    _dup2(console_, _fileno(stdout));
    _close(console_);
}

}  // namespace Morquil::Simulation
