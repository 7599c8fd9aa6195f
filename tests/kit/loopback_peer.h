#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "transport/socket_handle.h"

namespace Morquil::Testing {

/// Which of two sockets can be read without waiting: data has arrived, a connection is pending or the other side has
/// closed.
struct Readiness {
    bool first = false;
    bool second = false;
};

/// Waits until one of the sockets can be read or the time is over.
Readiness AwaitEither(SocketHandle first, SocketHandle second, int timeoutMs);

/// The far end of a connection on this machine. Every wait is bounded; a wait that times out looks as if nothing came.
class LoopbackPeer {
public:
    explicit LoopbackPeer(SocketHandle socket);
    ~LoopbackPeer();
    LoopbackPeer(const LoopbackPeer&) = delete;
    LoopbackPeer& operator=(const LoopbackPeer&) = delete;

    /// Sends all of `bytes`. Returns: false if the connection has ended.
    bool Send(std::string_view bytes);
    /// Receives until `count` bytes have arrived, the other side has closed or 5 s have passed.
    std::string Receive(std::size_t count);
    /// Waits up to 5 s for the next bytes. Returns: nothing if the connection has ended or the time is up.
    std::optional<std::string> ReceiveSome();
    /// Waits up to 5 s until something has arrived from the other side, and leaves it unread.
    bool HasReceived() const;
    /// Waits up to 5 s for the other side's close. Returns: whether it came, orderly or not, with no byte before it.
    bool SeesClose();
    /// Says that nothing more will be sent; can still receive.
    void ShutdownSending();
    /// Closes in an orderly way.
    void Close();
    /// Aborts the connection, so that the other side sees a reset.
    void Reset();
    /// Whether small sends of this socket go out at once (TCP_NODELAY).
    bool SendsAtOnce() const;
    /// Sends them at once from now on.
    void SendAtOnce();
    /// The socket, which stays the peer's.
    SocketHandle Handle() const { return socket_; }
    /// Hands the socket over to the caller.
    SocketHandle Detach();

private:
    SocketHandle socket_;
};

/// Listens on this machine: at 127.0.0.1 on a port that the system chose, or where the test says.
class LoopbackListener {
public:
    /// `backlog`: how many connections may wait to be accepted.
    explicit LoopbackListener(int backlog = 16);
    /// `host`: an address as a number, its first byte the most significant.
    LoopbackListener(std::uint32_t host, std::uint32_t port, int backlog = 16);
    ~LoopbackListener();
    LoopbackListener(const LoopbackListener&) = delete;
    LoopbackListener& operator=(const LoopbackListener&) = delete;

    /// 0 if the system assigned no port.
    std::uint32_t Port() const { return port_; }
    /// The socket, which stays the listener's.
    SocketHandle Handle() const { return socket_; }
    /// Waits up to 5 s for a connection. Returns: null when none came.
    std::unique_ptr<LoopbackPeer> Accept();
    /// Connects to this listener with a plain socket. Returns: null when that failed.
    std::unique_ptr<LoopbackPeer> Connect() const;
    /// Starts a connection to this listener without waiting until it is established.
    std::unique_ptr<LoopbackPeer> BeginConnect() const;
    /// Stops listening: the port refuses connections from now on.
    void Close();

private:
    SocketHandle socket_;
    std::uint32_t port_ = 0;
};

}  // namespace Morquil::Testing
