#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "tests/simulation/quiet_console.h"

namespace Morquil::Simulation {

namespace {

/// Opened once: there are very many conversations.
int NullDevice() {
    static const int device = open("/dev/null", O_WRONLY | O_CLOEXEC);
    return device;
}

}  // namespace

QuietConsole::QuietConsole() : console_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    dup2(NullDevice(), STDOUT_FILENO);
}

QuietConsole::~QuietConsole() {
    std::fflush(stdout);
    dup2(console_, STDOUT_FILENO);
    close(console_);
}

}  // namespace Morquil::Simulation
