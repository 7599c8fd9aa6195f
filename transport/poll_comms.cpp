#include "transport/poll_comms.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <memory>

#include "transport/connect_rules.h"
#include "transport/make_comms.h"

namespace Morquil {
namespace {

// Places of the wake-ups; the first that is signalled wins.
constexpr std::size_t stopPlace = 0;
constexpr std::size_t sendPlace = 1;
constexpr std::size_t userPlace = 2;
constexpr std::size_t socketPlace = 3;
constexpr std::array wakeUpEvents{CommsEvent::StopRequested, CommsEvent::SendRequested, CommsEvent::UserSignal};

// poll leaves a negative descriptor out.
constexpr int notWatched = -1;

int PollTimeout(std::uint32_t timeoutMs) {
    if (timeoutMs == unlimitedTimeout) {
        return -1;
    }
    constexpr std::uint32_t longest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(timeoutMs, longest));
}

// Polls until something is reported or the time is over; interruptions do not count. Returns what poll returns.
template <std::size_t count>
int PollUntil(std::array<pollfd, count>& watched, const Deadline& deadline) {
    for (;;) {
        const int timeout = PollTimeout(deadline.RemainingMs());
        const int result = poll(watched.data(), count, timeout);
        const bool interrupted = result < 0 && errno == EINTR;
        // A time-out that poll cannot hold ends early and goes on.
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

// Begins to connect. Returns: false when the attempt has failed at once.
bool BeginConnect(int socket, const sockaddr_in& address) {
    // An interrupted attempt goes on by itself, as one in progress does.
    return connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 || errno == EINPROGRESS ||
           errno == EINTR;
}

bool HasPeer(int socket) {
    sockaddr_storage peer{};
    socklen_t size = sizeof(peer);
    return getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &size) == 0;
}

// Whether an attempt that poll has reported on has succeeded.
bool HasConnected(int socket) {
    int error = 0;
    socklen_t size = sizeof(error);
    return getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0 && HasPeer(socket);
}

}  // namespace

bool PollComms::Initialise() {
    return std::all_of(wakeUps_.begin(), wakeUps_.end(), [](WakeUp& wakeUp) { return wakeUp.Create(); });
}

bool PollComms::Open(const std::string& host, std::uint32_t port, bool nonBlocking) {
    sockaddr_in address{};
    if (!IsConnectable(host, port) || !Resolve(host, port, address)) {
        return false;
    }
    FileDescriptor attempt(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP));
    if (!attempt.IsOpen() || !BeginConnect(attempt.Get(), address)) {
        return false;
    }
    if (!nonBlocking && !AwaitConnection(attempt.Get())) {
        return false;
    }
    Arm(attempt.Detach());
    stands_ = !nonBlocking;
    return true;
}

// Waits for the connection or for a stop, which wins.
bool PollComms::AwaitConnection(int socket) {
    std::array<pollfd, 2> watched{{{wakeUps_[stopPlace].Descriptor(), POLLIN, 0}, {socket, POLLOUT, 0}}};
    const bool reported = PollUntil(watched, Deadline(connectLimitMs)) > 0;
    return !wakeUps_[stopPlace].Take() && reported && HasConnected(socket);
}

bool PollComms::WaitForConnect(std::int32_t timeoutMs) {
    stands_ = stands_ || HasPeer(socket_);
    if (!stands_) {
        std::array<pollfd, 1> watched{{{socket_, POLLOUT, 0}}};
        const auto limit = timeoutMs < 0 ? unlimitedTimeout : static_cast<std::uint32_t>(timeoutMs);
        stands_ = socket_ >= 0 && PollUntil(watched, Deadline(limit)) > 0 && HasConnected(socket_);
    }
    Arm(socket_);
    return stands_;
}

bool PollComms::Attach(SocketHandle socket, bool /*nonBlocking*/) {
    stands_ = false;
    Arm(static_cast<int>(socket));
    return true;
}

// From here on everything about the socket is told anew.
void PollComms::Arm(int socket) {
    socket_ = socket;
    pending_.Clear();
    tellReadable_ = tellWritable_ = tellGone_ = true;
    fcntl(socket, F_SETFL, fcntl(socket, F_GETFL) | O_NONBLOCK);
    SendAtOnce(socket);
}

void PollComms::Close() {
    const FileDescriptor closes(socket_);
    socket_ = -1;
    stands_ = false;
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

// Waits once and queues what it finds, which may be nothing.
void PollComms::Poll(const Deadline& deadline) {
    const bool watchSocket = includeSocket_ && tellGone_;
    std::array<pollfd, 4> watched{{{wakeUps_[stopPlace].Descriptor(), POLLIN, 0},
                                   {wakeUps_[sendPlace].Descriptor(), POLLIN, 0},
                                   {wakeUps_[userPlace].Descriptor(), POLLIN, 0},
                                   {watchSocket ? socket_ : notWatched, WatchedEvents(), 0}}};
    const int result = PollUntil(watched, deadline);
    if (result < 0) {
        pending_.AddOne(CommsEvent::WaitFailed);
    } else if (result == 0) {
        pending_.AddOne(CommsEvent::Timeout);
    } else if (!TakeWakeUp(watched)) {
        pending_.AddSocket(Translate(watched[socketPlace].revents));
    }
}

// Queues the first wake-up that is signalled; later ones keep their signal for the next wait.
bool PollComms::TakeWakeUp(const std::array<pollfd, 4>& watched) {
    for (std::size_t index = 0; index < wakeUps_.size(); ++index) {
        if (watched[index].revents != 0 && wakeUps_[index].Take()) {
            pending_.AddOne(wakeUpEvents[index]);
            return true;
        }
    }
    return false;
}

short PollComms::WatchedEvents() const {
    const int events = POLLRDHUP | (tellReadable_ ? POLLIN : 0) | (tellWritable_ ? POLLOUT : 0);
    return static_cast<short>(events);
}

// What is told now is not told again before something new can have happened.
SocketState PollComms::Translate(short reported) {
    SocketState state;
    state.gone = (reported & (POLLRDHUP | POLLHUP | POLLERR | POLLNVAL)) != 0;
    state.readable = (reported & POLLIN) != 0;
    state.writable = (reported & POLLOUT) != 0;
    tellGone_ = tellGone_ && !state.gone;
    tellReadable_ = tellReadable_ && !state.readable;
    tellWritable_ = tellWritable_ && !state.writable;
    return state;
}

int PollComms::Receive(char* buffer, int length, int flags) {
    tellReadable_ = true;
    if (length < 0) {
        return commsFailed;
    }
    ssize_t result = 0;
    do {
        result = recv(socket_, buffer, static_cast<std::size_t>(length), flags);
    } while (result < 0 && errno == EINTR);
    if (result < 0) {
        return errno == EAGAIN ? commsWouldBlock : commsFailed;
    }
    return static_cast<int>(result);
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
    tellWritable_ = true;
    return commsWouldBlock;
}

bool PollComms::Signal(int which) {
    switch (which) {
        case signalSend:
            return wakeUps_[sendPlace].Signal();
        case signalStop:
            return wakeUps_[stopPlace].Signal();
        case signalUser:
            return wakeUps_[userPlace].Signal();
        default:
            return false;
    }
}

std::unique_ptr<AbstractComms> MakeComms() {
    return std::make_unique<PollComms>();
}

}  // namespace Morquil
