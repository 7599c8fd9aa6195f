#include <poll.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "simulator/streams/blocking_output.h"

namespace Morquil::Simulator {

namespace {

/// After a write that has failed: whether another attempt makes sense. Waits until it does.
bool CanRetry(int descriptor, int error) {
    if (error == EAGAIN) {
        // Somebody who shares the descriptor has made it non-blocking.
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
