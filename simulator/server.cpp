#include "simulator/server.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace Morquil::Simulator {

namespace {

/// A host that leaves this much unread is let go: a device's memory has an end.
constexpr std::size_t unreadLimit = std::size_t{4} * 1024 * 1024;

}  // namespace

/// The socket of one host. Operations that are on the way keep it alive; once closed it does nothing more.
class Server::Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(Server& server, asio::ip::tcp::socket socket, SimulatedDevice::HostId host)
        : server_(server), socket_(std::move(socket)), host_(host) {}

    void Read() {
        socket_.async_read_some(asio::buffer(received_),
                                [self = shared_from_this()](asio::error_code error, std::size_t length) {
                                    if (self->closed_) {
                                        return;
                                    }
                                    if (error) {
                                        self->server_.Drop(self->host_);
                                        return;
                                    }
                                    self->server_.device_.Receive(self->host_, {self->received_.data(), length});
                                    self->server_.SendAll();
                                    if (!self->closed_) {
                                        self->Read();
                                    }
                                });
    }

    /// Returns false when the host leaves too much unread.
    bool Send(const std::string& text) {
        waiting_ += text;
        if (writing_.empty() && !waiting_.empty()) {
            Write();
        }
        return waiting_.size() <= unreadLimit;
    }

    void Close() {
        closed_ = true;
        asio::error_code ignored;
        socket_.close(ignored);
    }

private:
    void Write() {
        writing_ = std::exchange(waiting_, {});
        asio::async_write(socket_, asio::buffer(writing_),
                          [self = shared_from_this()](asio::error_code error, std::size_t /*length*/) {
                              self->writing_.clear();
                              // A failed write needs no answer: the read fails as well and drops the host.
                              if (!error && !self->closed_ && !self->waiting_.empty()) {
                                  self->Write();
                              }
                          });
    }

    Server& server_;
    asio::ip::tcp::socket socket_;
    const SimulatedDevice::HostId host_;
    bool closed_ = false;
    std::array<char, 4096> received_{};
    std::string waiting_;
    std::string writing_;
};

Server::Server(asio::io_context& context, SimulatedDevice& device) : acceptor_(context), device_(device) {}

Server::~Server() = default;

asio::error_code Server::Listen(const asio::ip::tcp::endpoint& endpoint) {
    asio::error_code error;
    acceptor_.open(endpoint.protocol(), error);
    if (!error) {
        acceptor_.set_option(asio::socket_base::reuse_address(true), error);
    }
    if (!error) {
        acceptor_.bind(endpoint, error);
    }
    if (!error) {
        acceptor_.listen(asio::socket_base::max_listen_connections, error);
    }
    if (!error) {
        Accept();
    }
    return error;
}

asio::ip::tcp::endpoint Server::Endpoint() const {
    asio::error_code ignored;
    return acceptor_.local_endpoint(ignored);
}

void Server::Accept() {
    acceptor_.async_accept([this](asio::error_code error, asio::ip::tcp::socket socket) {
        if (error == asio::error::operation_aborted) {
            return;
        }
        if (!error) {
            asio::error_code ignored;
            socket.set_option(asio::ip::tcp::no_delay(true), ignored);
            const SimulatedDevice::HostId host = ++lastHost_;
            const auto connection = std::make_shared<Connection>(*this, std::move(socket), host);
            connections_.emplace(host, connection);
            device_.Connect(host);
            SendAll();
            connection->Read();
        }
        Accept();
    });
}

void Server::SendAll() {
    std::vector<SimulatedDevice::HostId> tooSlow;
    for (const auto& [host, connection] : connections_) {
        if (!connection->Send(device_.TakeTextFor(host))) {
            tooSlow.push_back(host);
        }
    }
    for (const SimulatedDevice::HostId host : tooSlow) {
        Drop(host);
    }
}

void Server::Drop(SimulatedDevice::HostId host) {
    const auto found = connections_.find(host);
    found->second->Close();
    connections_.erase(found);
    device_.Disconnect(host);
}

}  // namespace Morquil::Simulator
