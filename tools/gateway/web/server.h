// Accepts connections.
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "gateway/fleet/alarm.h"
#include "gateway/web/connection.h"

namespace Morquil::Gateway {

/// Threads: the context's.
class Server {
public:
    explicit Server(WebContext& web);
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Reads the certificate, if there is one; connections that exist keep theirs.
    /// Returns: why it cannot be used; empty if all is well.
    std::string LoadCertificate();

    /// Occupies the address and the port.
    /// Returns: why that is impossible; empty if all is well.
    std::string Listen();
    unsigned short Port() const;

    /// Accepts nothing more, and lets connections finish the request that they serve. Calls `done` when there are none.
    void Drain(std::function<void()> done);
    std::size_t Connections() const { return connections_.size(); }

private:
    void Accept();
    void Serve(boost::asio::ip::tcp::socket socket);
    void OnClosed(std::uint64_t number);

    WebContext& web_;
    boost::asio::ip::tcp::acceptor acceptor_;
    std::shared_ptr<boost::asio::ssl::context> security_;
    std::map<std::uint64_t, std::weak_ptr<Connection>> connections_;
    std::uint64_t lastNumber_ = 0;
    Alarm retry_;
    std::function<void()> onDrained_;
    std::shared_ptr<Server*> self_;
};

}  // namespace Morquil::Gateway
