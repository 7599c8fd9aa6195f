#include "command/output/standard_output.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace Morquil::Command {

StandardOutput::StandardOutput() = default;

Written StandardOutput::Write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return errno == EPIPE ? Written::NoReader : Written::Failed;
        }
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return Written::All;
}

bool StandardOutput::HasReader() const {
    pollfd output{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
    return poll(&output, 1, 0) != 1 || (output.revents & POLLERR) == 0;
}

bool StandardOutput::IsTerminal() const {
    return isatty(STDOUT_FILENO) == 1;
}

std::optional<std::size_t> StandardOutput::Width() const {
    winsize size{};
    const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? std::optional<std::size_t>(size.ws_col) : std::nullopt;
}

}  // namespace Morquil::Command
