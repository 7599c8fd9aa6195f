#include <fcntl.h>
#include <poll.h>
#include <stdio_ext.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>

#include "core/above_standard_streams.h"
#include "core/raised_signals.h"
#include "transport/file_descriptor.h"
#include "transport/standard_output.h"

namespace Morquil {
namespace {

// Locks the stream against other threads if it can. A thread that is writing to it may be waiting for a reader, so this
// never waits for the lock.
class StreamHold {
public:
    StreamHold() : isHeld_(ftrylockfile(stdout) == 0) {}
    ~StreamHold() {
        if (isHeld_) {
            funlockfile(stdout);
        }
    }
    StreamHold(const StreamHold&) = delete;
    StreamHold& operator=(const StreamHold&) = delete;

    bool IsHeld() const { return isHeld_; }

private:
    const bool isHeld_;
};

// Whether a pipe accepts at least PIPE_BUF bytes and has a reader.
bool IsReady(int descriptor) {
    pollfd watched{descriptor, POLLOUT, 0};
    return poll(&watched, 1, 0) == 1 && watched.revents == POLLOUT;
}

// Writes the text that the host's stream has buffered, to keep the order of the calls. If more is buffered than a pipe
// is certain to accept, it stays in the buffer and our text goes first. Returns: false when a reader has to make room
// first.
bool FlushStream(int descriptor, bool isFile) {
    const std::size_t heldBack = __fpending(stdout);
    if (heldBack == 0) {
        return true;
    }
    if (!isFile && !IsReady(descriptor)) {
        return false;
    }
    if (isFile || heldBack <= PIPE_BUF) {
        fflush_unlocked(stdout);
    }
    return true;
}

// Opens the same pipe or terminal a second time: O_NONBLOCK belongs to the open file, and the host's must not change.
// The result is not open if the process may not open it or it has no reader.
FileDescriptor OpenWithoutWaiting(int descriptor) {
    std::array<char, 32> path;
    std::snprintf(path.data(), path.size(), "/proc/self/fd/%d", descriptor);
    return FileDescriptor(
        QRN::Core::AboveStandardStreams(open(path.data(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)));
}

// Terminals, and pipes before Linux 6.4, do not support a write that never waits.
ssize_t WriteToReader(int descriptor, std::string_view text) {
    const iovec piece{const_cast<char*>(text.data()), text.size()};
    const ssize_t written = pwritev2(descriptor, &piece, 1, -1, RWF_NOWAIT);
    if (written >= 0 || errno != EOPNOTSUPP) {
        return written;
    }
    if (const FileDescriptor own = OpenWithoutWaiting(descriptor); own.IsOpen()) {
        return write(own.Get(), text.data(), text.size());
    }
    return IsReady(descriptor) ? write(descriptor, text.data(), text.size()) : -1;
}

ssize_t Write(int descriptor, mode_t kind, std::string_view text) {
    if (S_ISREG(kind)) {
        return write(descriptor, text.data(), text.size());
    }
    if (S_ISSOCK(kind)) {
        return send(descriptor, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }
    return WriteToReader(descriptor, text);
}

}  // namespace

bool IsStandardOutputOpen() {
    return fcntl(STDOUT_FILENO, F_GETFD) >= 0;
}

std::size_t WriteAtOnce(std::string_view text) {
    const QRN::Core::RaisedSignals raised;
    const StreamHold stream;
    const int descriptor = fileno_unlocked(stdout);
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || (stream.IsHeld() && !FlushStream(descriptor, S_ISREG(status.st_mode)))) {
        return 0;
    }
    const ssize_t written = Write(descriptor, status.st_mode, text);
    return written > 0 ? static_cast<std::size_t>(written) : 0;
}

}  // namespace Morquil
