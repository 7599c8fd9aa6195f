#include "transport/poll_comms.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <memory>
#include <optional>

#include "core/above_standard_streams.h"
#include "transport/connect_rules.h"
#include "transport/make_comms.h"

namespace Morquil {
namespace {

// Indexes into the watched descriptors.
constexpr std::size_t wakeUpPlace = 0;
constexpr std::size_t socketPlace = 1;

// poll ignores a negative descriptor.
constexpr int notWatched = -1;

int PollTimeout(std::uint32_t timeoutMs) {
    if (timeoutMs == unlimitedTimeout) {
        return -1;
    }
    constexpr std::uint32_t longest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(timeoutMs, longest));
}

// Polls until poll reports something or the time is up; an interruption does not end the wait. Returns what poll
// returns.
template <std::size_t count>
int PollUntil(std::array<pollfd, count>& watched, const Deadline& deadline) {
    for (;;) {
        const int timeout = PollTimeout(deadline.RemainingMs());
        const int result = poll(watched.data(), count, timeout);
        const bool interrupted = result < 0 && errno == EINTR;
        // A time-out too long for one poll ends early and is continued.
        const bool endedEarly = result == 0 && deadline.RemainingMs() > 0;
        if (!interrupted && !endedEarly) {
            return result;
        }
    }
}

// The first IPv4 address of `host`.
bool Resolve(const std::string& host, std::uint32_t port, sockaddr_in& address) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0) {
        return false;
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, &freeaddrinfo);
    address = *reinterpret_cast<const sockaddr_in*>(found->ai_addr);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return true;
}

// Without this, small blocks wait for the acknowledgement of the block before them.
void SendAtOnce(int socket) {
    constexpr int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
}

// Begins to connect. Returns: false when the attempt fails at once.
bool BeginConnect(int socket, const sockaddr_in& address) {
    // An interrupted attempt continues in the background, like one in progress.
    return connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 || errno == EINPROGRESS ||
           errno == EINTR;
}

bool HasPeer(int socket) {
    sockaddr_storage peer{};
    socklen_t size = sizeof(peer);
    return getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &size) == 0;
}

// Whether the attempt has succeeded. Call it once poll has reported on it.
bool HasConnected(int socket) {
    int error = 0;
    socklen_t size = sizeof(error);
    return getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0 && HasPeer(socket);
}

// Whether the system holds bytes that have not been received. poll cannot distinguish them from the end of a
// connection.
bool HasUnreadBytes(int socket) {
    int count = 0;
    return ioctl(socket, FIONREAD, &count) == 0 && count > 0;
}

}  // namespace

bool PollComms::Initialise() {
    return wakeUp_.Create();
}

bool PollComms::Open(const std::string& host, std::uint32_t port, bool nonBlocking) {
    sockaddr_in address{};
    if (!IsConnectable(host, port) || !Resolve(host, port, address)) {
        return false;
    }
    FileDescriptor attempt(
        QRN::Core::AboveStandardStreams(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP)));
    if (!attempt.IsOpen() || !BeginConnect(attempt.Get(), address)) {
        return false;
    }
    if (!nonBlocking && !AwaitConnection(attempt.Get())) {
        return false;
    }
    SendAtOnce(attempt.Get());
    readAhead_.Enable(true);
    Arm(attempt.Detach());
    isConnected_ = !nonBlocking;
    return true;
}

// Waits for the connection or for a stop, which takes precedence. Other signals stay pending.
bool PollComms::AwaitConnection(int socket) {
    const Deadline deadline(connectLimitMs);
    const Signals::Wait wait(signals_);
    std::array<pollfd, 2> watched{{{wakeUp_.Descriptor(), POLLIN, 0}, {socket, POLLOUT, 0}}};
    while (!signals_.Take(signalStop)) {
        if (watched[socketPlace].revents != 0) {
            return HasConnected(socket);
        }
        if (PollUntil(watched, deadline) <= 0) {
            return false;
        }
        if (watched[wakeUpPlace].revents != 0) {
            wakeUp_.Take();
        }
    }
    return false;
}

bool PollComms::WaitForConnect(std::int32_t timeoutMs) {
    isConnected_ = isConnected_ || HasPeer(socket_);
    if (!isConnected_) {
        std::array<pollfd, 1> watched{{{socket_, POLLOUT, 0}}};
        const auto limit = timeoutMs < 0 ? unlimitedTimeout : static_cast<std::uint32_t>(timeoutMs);
        isConnected_ = socket_ >= 0 && PollUntil(watched, Deadline(limit)) > 0 && HasConnected(socket_);
    }
    Arm(socket_);
    return isConnected_;
}

bool PollComms::Attach(SocketHandle socket, bool /*nonBlocking*/) {
    const auto attached = static_cast<int>(socket);
    fcntl(attached, F_SETFL, fcntl(attached, F_GETFL) | O_NONBLOCK);
    SendAtOnce(attached);
    isConnected_ = false;
    readAhead_.Enable(false);
    Arm(attached);
    return true;
}

// From here on every state of the socket is reported again.
void PollComms::Arm(int socket) {
    if (socket != socket_) {
        readAhead_.Clear();
    }
    socket_ = socket;
    pending_.Clear();
    readAhead_.ReportAgain();
    hasEnded_ = false;
    reportReadable_ = reportWritable_ = reportGone_ = true;
}

void PollComms::Close() {
    const FileDescriptor closes(socket_);
    socket_ = -1;
    isConnected_ = false;
    hasEnded_ = false;
    readAhead_.Clear();
}

std::uint32_t PollComms::SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) {
    includeSocket_ = includeSocket;
    waitTimeoutMs_ = includeSocket ? timeoutMs : idleTimeoutMs;
    return waitTimeoutMs_;
}

CommsEvent PollComms::WaitForEvent() {
    const Deadline deadline(waitTimeoutMs_);
    while (pending_.IsEmpty()) {
        Poll(deadline);
    }
    return pending_.TakeOldest();
}

// Queues a signal, or waits once and queues the events that it finds, which may be none. Other signals stay pending.
void PollComms::Poll(const Deadline& deadline) {
    const Signals::Wait wait(signals_);
    if (TakeSignal()) {
        return;
    }
    const bool watchSocket = includeSocket_ && !hasEnded_;
    const bool isDue = includeSocket_ && IsSocketEventDue();
    std::array<pollfd, 2> watched{
        {{wakeUp_.Descriptor(), POLLIN, 0}, {watchSocket ? socket_ : notWatched, WatchedEvents(), 0}}};
    const int result = PollUntil(watched, isDue ? Deadline(0) : deadline);
    if (result < 0) {
        pending_.AddOne(CommsEvent::WaitFailed);
    } else if (result == 0 && !isDue) {
        pending_.AddOne(CommsEvent::Timeout);
    } else if (watched[wakeUpPlace].revents == 0) {
        pending_.AddSocket(Translate(watched[socketPlace].revents));
    } else {
        wakeUp_.Take();
        TakeSignal();
    }
}

bool PollComms::TakeSignal() {
    const std::optional<CommsEvent> signal = signals_.TakeFirst();
    if (signal) {
        pending_.AddOne(*signal);
    }
    return signal.has_value();
}

bool PollComms::HasUnread() const {
    return !readAhead_.IsEmpty() || HasUnreadBytes(socket_);
}

// Whether an event is due that poll does not report: bytes that were read ahead, or the rest of a connection that has
// ended.
bool PollComms::IsSocketEventDue() const {
    return readAhead_.HasUnreported() || (hasEnded_ && (HasUnread() ? reportReadable_ : reportGone_));
}

short PollComms::WatchedEvents() const {
    const int events = POLLRDHUP | (reportReadable_ ? POLLIN : 0) | (reportWritable_ ? POLLOUT : 0);
    return static_cast<short>(events);
}

// A state that is reported now is not reported again until it can have changed. The end is reported after the bytes
// before it have been received.
SocketState PollComms::Translate(short reported) {
    hasEnded_ = hasEnded_ || (reported & (POLLRDHUP | POLLHUP | POLLERR | POLLNVAL)) != 0;
    const bool hasUnread = hasEnded_ ? HasUnread() : (reported & POLLIN) != 0 || readAhead_.HasUnreported();
    SocketState state;
    state.readable = reportReadable_ && hasUnread;
    state.gone = hasEnded_ && !hasUnread && reportGone_;
    state.writable = (reported & POLLOUT) != 0;
    reportGone_ = reportGone_ && !state.gone;
    reportReadable_ = reportReadable_ && !state.readable;
    readAhead_.MarkReported(false);
    reportWritable_ = reportWritable_ && !state.writable;
    return state;
}

int PollComms::Receive(char* buffer, int length, int flags) {
    reportReadable_ = true;
    if (length < 0) {
        return commsFailed;
    }
    return readAhead_.Take(buffer, length, flags, (flags & MSG_PEEK) != 0, [this](char* into, int room, int way) {
        ssize_t result = 0;
        do {
            result = recv(socket_, into, static_cast<std::size_t>(room), way);
        } while (result < 0 && errno == EINTR);
        return result >= 0 ? static_cast<int>(result) : errno == EAGAIN ? commsWouldBlock : commsFailed;
    });
}

int PollComms::Send(const char* data, int length, int flags) {
    if (length < 0) {
        return commsFailed;
    }
    ssize_t result = 0;
    do {
        result = send(socket_, data, static_cast<std::size_t>(length), flags | MSG_NOSIGNAL);
    } while (result < 0 && errno == EINTR);
    if (result >= 0) {
        return static_cast<int>(result);
    }
    if (errno != EAGAIN) {
        return commsFailed;
    }
    reportWritable_ = true;
    return commsWouldBlock;
}

bool PollComms::Signal(int which) {
    const bool isSignal = which == signalSend || which == signalStop || which == signalUser;
    if (!isSignal || !wakeUp_.IsOpen()) {
        return false;
    }
    return !signals_.Raise(static_cast<CommsSignal>(which)) || wakeUp_.Signal();
}

// A signal other than stop wakes the wait once and stays pending. If the other side has only closed its sending
// direction, the wait goes on: a send would still block.
void PollComms::WaitUntilWritable() {
    const Signals::Wait wait(signals_);
    std::array<pollfd, 2> watched{{{wakeUp_.Descriptor(), POLLIN, 0}, {socket_, POLLOUT, 0}}};
    while (!signals_.Has(signalStop) && watched[socketPlace].revents == 0) {
        if (PollUntil(watched, Deadline(unlimitedTimeout)) < 0) {
            return;
        }
        if (watched[wakeUpPlace].revents != 0) {
            wakeUp_.Take();
        }
    }
}

std::unique_ptr<AbstractComms> MakeComms() {
    return std::make_unique<PollComms>();
}

}  // namespace Morquil
