#include "core/raised_signals.h"

#include <cerrno>
#include <ctime>
#include <initializer_list>

namespace QRN::Core {

RaisedSignals::RaisedSignals() {
    sigset_t waiting;
    sigpending(&waiting);
    sigemptyset(&raised_);
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        if (sigismember(&waiting, signal) == 0) {
            sigaddset(&raised_, signal);
        }
    }
    pthread_sigmask(SIG_BLOCK, &raised_, &maskBefore_);
}

RaisedSignals::~RaisedSignals() {
    const int error = errno;
    const timespec atOnce{};
    while (sigtimedwait(&raised_, nullptr, &atOnce) > 0 || errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
    errno = error;
}

}  // namespace QRN::Core
