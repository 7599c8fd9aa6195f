#include <poll.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "simulator/streams/blocking_output.h"

namespace Morquil::Simulator {

namespace {

/// Called after a failed write: returns whether to try again. Waits until that makes sense.
bool CanRetry(int descriptor, int error) {
    if (error == EAGAIN) {
        // Another user of the descriptor has made it non-blocking.
        pollfd writable{.fd = descriptor, .events = POLLOUT, .revents = 0};
        return poll(&writable, 1, -1) >= 0 || errno == EINTR;
    }
    return error == EINTR;
}

}  // namespace

void IgnoreBrokenPipes() {
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
}

bool WriteCompletely(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (!CanRetry(descriptor, errno)) {
            return false;
        }
    }
    return true;
}

}  // namespace Morquil::Simulator
