#pragma once

#include <asio.hpp>
#include <functional>
#include <map>
#include <memory>

#include "simulator/link/station.h"

namespace Morquil::Simulator {

/// Connects a station to the network. Everything runs on the thread that runs the `io_context`.
class Server {
public:
    struct Surroundings {
        /// The station's current time.
        std::function<Station::Moment()> now;
        /// Called when a host has connected or disconnected.
        std::function<void()> onHostsChanged;
        /// Called when hosts cannot be accepted, for example for lack of descriptors. Called once until accepting works
        /// again.
        std::function<void(asio::error_code)> onAcceptFailed;
    };

    /// `station` is not owned.
    Server(asio::io_context& context, Station& station, Surroundings surroundings);
    ~Server();

    /// Starts to listen. Returns why that is impossible, or no error.
    asio::error_code Listen(const asio::ip::tcp::endpoint& endpoint);

    /// The address and port that hosts can connect to.
    asio::ip::tcp::endpoint Endpoint() const;

    std::size_t HostCount() const { return connections_.size(); }

    /// Sends the station's pending text. Call it after everything that may have changed the station.
    void SendAll();

private:
    class Connection;
    friend class Connection;

    void Accept();
    void AcceptLater(asio::error_code error);
    void Welcome(asio::ip::tcp::socket socket);
    void Drop(Station::HostId host);
    void AwaitStation();

    asio::ip::tcp::acceptor acceptor_;
    asio::steady_timer acceptTimer_;
    asio::steady_timer stationTimer_;
    Station& station_;
    Surroundings surroundings_;
    bool acceptFails_ = false;
    Station::HostId lastHost_ = 0;
    std::map<Station::HostId, std::shared_ptr<Connection>> connections_;
};

}  // namespace Morquil::Simulator
