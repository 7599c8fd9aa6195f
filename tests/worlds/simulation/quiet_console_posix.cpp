#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "tests/worlds/simulation/quiet_console.h"

namespace Morquil::Testing::Worlds {

namespace {

/// Opened once, before the first test: the conversations are very many, and none of them may leak anything.
const int nullDevice = open("/dev/null", O_WRONLY | O_CLOEXEC);

}  // namespace

QuietConsole::QuietConsole() : console_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    dup2(nullDevice, STDOUT_FILENO);
}

QuietConsole::~QuietConsole() {
    std::fflush(stdout);
    dup2(console_, STDOUT_FILENO);
    close(console_);
}

}  // namespace Morquil::Testing::Worlds
