#include "tests/kit/loopback_peer.h"

#ifdef _WIN32
#include <winsock2.h>
// winsock2.h comes first.
#include <ws2tcpip.h>
#else
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <array>

namespace Morquil::Testing {
namespace {

constexpr int waitMs = 5000;

#ifdef _WIN32
using Socket = SOCKET;
using Size = int;
using AddressSize = int;
constexpr int sendFlags = 0;

void StartSockets() {
    static const int started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data);
    }();
    static_cast<void>(started);
}
int CloseSocket(Socket socket) {
    return closesocket(socket);
}
using PollEntry = WSAPOLLFD;
int Poll(PollEntry* watched, unsigned count, int timeoutMs) {
    return WSAPoll(watched, count, timeoutMs);
}
void SetNonBlocking(Socket socket) {
    u_long on = 1;
    ioctlsocket(socket, static_cast<long>(FIONBIO), &on);
}
#else
using Socket = int;
using Size = std::size_t;
using AddressSize = socklen_t;
constexpr int sendFlags = MSG_NOSIGNAL;

void StartSockets() {}
int CloseSocket(Socket socket) {
    return close(socket);
}
using PollEntry = pollfd;
int Poll(PollEntry* watched, unsigned count, int timeoutMs) {
    return poll(watched, count, timeoutMs);
}
void SetNonBlocking(Socket socket) {
    fcntl(socket, F_SETFL, fcntl(socket, F_GETFL) | O_NONBLOCK);
}
#endif

Socket Native(SocketHandle socket) {
    return static_cast<Socket>(socket);
}

sockaddr_in SocketAddress(std::uint32_t host, std::uint32_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(host);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

sockaddr_in LoopbackAddress(std::uint32_t port) {
    return SocketAddress(INADDR_LOOPBACK, port);
}

SocketHandle NewSocket() {
    StartSockets();
    return static_cast<SocketHandle>(socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
}

bool BecomesReadable(SocketHandle socket) {
    PollEntry watched{Native(socket), POLLIN, 0};
    return Poll(&watched, 1, waitMs) > 0;
}

int ReceiveOnce(SocketHandle socket, char* buffer, std::size_t size) {
    return static_cast<int>(recv(Native(socket), buffer, static_cast<Size>(size), 0));
}

bool ConnectTo(SocketHandle socket, std::uint32_t port) {
    const sockaddr_in address = LoopbackAddress(port);
    return connect(Native(socket), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}

void CloseAndReset(SocketHandle& socket) {
    if (socket != invalidSocket) {
        CloseSocket(Native(socket));
        socket = invalidSocket;
    }
}

}  // namespace

Readiness AwaitEither(SocketHandle first, SocketHandle second, int timeoutMs) {
    std::array<PollEntry, 2> watched{{{Native(first), POLLIN, 0}, {Native(second), POLLIN, 0}}};
    if (Poll(watched.data(), static_cast<unsigned>(watched.size()), timeoutMs) <= 0) {
        return {};
    }
    return {watched[0].revents != 0, watched[1].revents != 0};
}

LoopbackPeer::LoopbackPeer(SocketHandle socket) : socket_(socket) {}

LoopbackPeer::~LoopbackPeer() {
    Close();
}

bool LoopbackPeer::Send(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto sent = send(Native(socket_), bytes.data(), static_cast<Size>(bytes.size()), sendFlags);
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::string LoopbackPeer::Receive(std::size_t count) {
    std::string received;
    std::array<char, 4096> buffer{};
    while (received.size() < count && BecomesReadable(socket_)) {
        const int size = ReceiveOnce(socket_, buffer.data(), std::min(buffer.size(), count - received.size()));
        if (size <= 0) {
            break;
        }
        received.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return received;
}

std::optional<std::string> LoopbackPeer::ReceiveSome() {
    std::array<char, 4096> buffer{};
    const int size = BecomesReadable(socket_) ? ReceiveOnce(socket_, buffer.data(), buffer.size()) : 0;
    return size > 0 ? std::optional(std::string(buffer.data(), static_cast<std::size_t>(size))) : std::nullopt;
}

bool LoopbackPeer::HasReceived() const {
    return BecomesReadable(socket_);
}

bool LoopbackPeer::SeesClose() {
    char byte = 0;
    return BecomesReadable(socket_) && ReceiveOnce(socket_, &byte, 1) <= 0;
}

void LoopbackPeer::ShutdownSending() {
    shutdown(Native(socket_), 1);
}

void LoopbackPeer::Close() {
    CloseAndReset(socket_);
}

void LoopbackPeer::Reset() {
    linger atOnce{};
    atOnce.l_onoff = 1;
    setsockopt(Native(socket_), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce), sizeof(atOnce));
    Close();
}

bool LoopbackPeer::SendsAtOnce() const {
    int on = 0;
    AddressSize size = sizeof(on);
    getsockopt(Native(socket_), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<char*>(&on), &size);
    return on != 0;
}

void LoopbackPeer::SendAtOnce() {
    const int on = 1;
    setsockopt(Native(socket_), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof(on));
}

SocketHandle LoopbackPeer::Detach() {
    const SocketHandle socket = socket_;
    socket_ = invalidSocket;
    return socket;
}

LoopbackListener::LoopbackListener(int backlog) : LoopbackListener(INADDR_LOOPBACK, 0, backlog) {}

LoopbackListener::LoopbackListener(std::uint32_t host, std::uint32_t port, int backlog) : socket_(NewSocket()) {
    sockaddr_in address = SocketAddress(host, port);
    AddressSize size = sizeof(address);
    if (bind(Native(socket_), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
        listen(Native(socket_), backlog) == 0 &&
        getsockname(Native(socket_), reinterpret_cast<sockaddr*>(&address), &size) == 0) {
        port_ = ntohs(address.sin_port);
    }
}

LoopbackListener::~LoopbackListener() {
    Close();
}

std::unique_ptr<LoopbackPeer> LoopbackListener::Accept() {
    if (!BecomesReadable(socket_)) {
        return nullptr;
    }
    return std::make_unique<LoopbackPeer>(static_cast<SocketHandle>(accept(Native(socket_), nullptr, nullptr)));
}

std::unique_ptr<LoopbackPeer> LoopbackListener::Connect() const {
    const SocketHandle socket = NewSocket();
    auto peer = std::make_unique<LoopbackPeer>(socket);
    return ConnectTo(socket, port_) ? std::move(peer) : nullptr;
}

std::unique_ptr<LoopbackPeer> LoopbackListener::BeginConnect() const {
    const SocketHandle socket = NewSocket();
    SetNonBlocking(Native(socket));
    static_cast<void>(ConnectTo(socket, port_));
    return std::make_unique<LoopbackPeer>(socket);
}

void LoopbackListener::Close() {
    CloseAndReset(socket_);
}

}  // namespace Morquil::Testing
