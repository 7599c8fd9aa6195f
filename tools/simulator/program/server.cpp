#include "simulator/program/server.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace Morquil::Simulator {

/// The socket of one host. Pending operations keep it alive; once closed it does nothing more.
class Server::Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(Server& server, asio::ip::tcp::socket socket, Station::HostId host)
        : server_(server), socket_(std::move(socket)), timer_(socket_.get_executor()), host_(host) {}

    void Read() {
        socket_.async_read_some(asio::buffer(received_),
                                [self = shared_from_this()](asio::error_code error, std::size_t length) {
                                    if (!self->closed_) {
                                        self->TakeReceived(error, length);
                                    }
                                });
    }

    /// Sends what is due. Text that the host does not read stays with the station.
    void Send() {
        if (closed_) {
            return;
        }
        if (server_.station_.MustDisconnect(host_)) {
            server_.Drop(host_);
            return;
        }
        if (writing_) {
            return;
        }
        Delivery delivery = server_.station_.Take(host_, server_.surroundings_.now());
        if (delivery.hangUp) {
            server_.Drop(host_);
        } else if (!delivery.bytes.empty()) {
            Write(std::move(delivery.bytes));
        } else {
            AwaitDelivery();
        }
    }

    void Close() {
        closed_ = true;
        timer_.cancel();
        asio::error_code ignored;
        socket_.shutdown(asio::socket_base::shutdown_both, ignored);
        socket_.close(ignored);
    }

private:
    void TakeReceived(asio::error_code error, std::size_t length) {
        if (error) {
            server_.Drop(host_);
            return;
        }
        server_.station_.Receive(host_, {received_.data(), length}, server_.surroundings_.now());
        server_.SendAll();
        if (!closed_) {
            Read();
        }
    }

    void Write(std::string text) {
        writing_ = true;
        sent_ = std::move(text);
        asio::async_write(socket_, asio::buffer(sent_),
                          [self = shared_from_this()](asio::error_code error, std::size_t /*length*/) {
                              self->writing_ = false;
                              // A failed write needs no handling: the read also fails and drops the host.
                              if (!error && !self->closed_) {
                                  self->Send();
                              }
                          });
    }

    void AwaitDelivery() {
        const std::optional<Station::Moment> due = server_.station_.NextDelivery(host_);
        timer_.cancel();
        if (due) {
            timer_.expires_after(*due - server_.surroundings_.now());
            timer_.async_wait([self = shared_from_this()](asio::error_code error) {
                if (!error && !self->closed_) {
                    self->Send();
                }
            });
        }
    }

    Server& server_;
    asio::ip::tcp::socket socket_;
    asio::steady_timer timer_;
    const Station::HostId host_;
    bool closed_ = false;
    bool writing_ = false;
    std::array<char, 4096> received_{};
    std::string sent_;
};

Server::Server(asio::io_context& context, Station& station, Surroundings surroundings)
    : context_(context), stationTimer_(context), station_(station), surroundings_(std::move(surroundings)) {}

Server::~Server() {
    CloseListener();
}

asio::error_code Server::Bind(const asio::ip::tcp::endpoint& endpoint) {
    listener_ = std::make_shared<Listener>(
        context_, Listener::Actions{.onAccepted = [this](asio::ip::tcp::socket socket) { Welcome(std::move(socket)); },
                                    .onFailed = surroundings_.onAcceptFailed});
    const asio::error_code error = listener_->Bind(endpoint);
    if (error) {
        CloseListener();
    } else {
        endpoint_ = listener_->Endpoint();
    }
    return error;
}

asio::error_code Server::Listen() {
    const asio::error_code error = listener_->Listen();
    if (error) {
        CloseListener();
    }
    return error;
}

void Server::CloseListener() {
    if (listener_) {
        std::exchange(listener_, nullptr)->Close();
    }
}

void Server::GoOffline() {
    CloseListener();
    while (!connections_.empty()) {
        Drop(connections_.begin()->first);
    }
}

asio::error_code Server::GoOnline() {
    if (listener_) {
        return {};
    }
    const asio::error_code error = Bind(endpoint_);
    return error ? error : Listen();
}

void Server::Welcome(asio::ip::tcp::socket socket) {
    asio::error_code ignored;
    socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    const Station::HostId host = ++lastHost_;
    const auto connection = std::make_shared<Connection>(*this, std::move(socket), host);
    connections_.emplace(host, connection);
    station_.Connect(host, surroundings_.now());
    connection->Read();
    SendAll();
    surroundings_.onHostsChanged();
}

void Server::SendAll() {
    // Sending may end connections, so the list is copied before it is walked.
    std::vector<std::shared_ptr<Connection>> connections;
    for (const auto& [host, connection] : connections_) {
        connections.push_back(connection);
    }
    for (const auto& connection : connections) {
        connection->Send();
    }
    AwaitStation();
}

void Server::AwaitStation() {
    const std::optional<Station::Moment> due = station_.NextDue();
    stationTimer_.cancel();
    if (due) {
        stationTimer_.expires_after(*due - surroundings_.now());
        stationTimer_.async_wait([this](asio::error_code error) {
            if (!error) {
                station_.Advance(surroundings_.now());
                SendAll();
            }
        });
    }
}

void Server::Drop(Station::HostId host) {
    const auto found = connections_.find(host);
    found->second->Close();
    connections_.erase(found);
    station_.Disconnect(host, surroundings_.now());
    surroundings_.onHostsChanged();
}

}  // namespace Morquil::Simulator
