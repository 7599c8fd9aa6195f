// A connection's bytes, plain or encrypted.
#pragma once

#include <boost/asio/buffer.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace boost::asio::ssl {
class context;
}

namespace Morquil::Gateway {

/// Threads: the context's. Handlers are called after the function has returned, also of a socket that was closed.
class Socket {
public:
    using Transferred = std::function<void(boost::system::error_code, std::size_t)>;

    virtual ~Socket() = default;

    /// Makes the connection ready: shakes hands if it is encrypted.
    virtual void Start(std::function<void(boost::system::error_code)> done) = 0;
    virtual void ReadSome(boost::asio::mutable_buffer buffer, Transferred done) = 0;
    virtual void WriteAll(const std::vector<boost::asio::const_buffer>& buffers, Transferred done) = 0;
    /// Ends sending, so that what was written still arrives.
    virtual void Finish() = 0;
    virtual void Close() = 0;
    virtual bool IsSecure() const = 0;
    virtual boost::asio::ip::tcp::socket& Bottom() = 0;

    /// The client's address without its port.
    std::string Peer();
    /// Bounds what the system keeps for a client that does not read.
    void BoundUnread();
};

/// `security`: null for an unencrypted connection. It is kept as long as the socket.
std::shared_ptr<Socket> MakeSocket(boost::asio::ip::tcp::socket socket,
                                   std::shared_ptr<boost::asio::ssl::context> security);

}  // namespace Morquil::Gateway
