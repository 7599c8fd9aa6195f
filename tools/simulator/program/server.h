#pragma once

#include <asio.hpp>
#include <functional>
#include <map>
#include <memory>

#include "simulator/link/station.h"
#include "simulator/program/listener.h"

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

    /// Occupies the address. Returns why that is impossible, or no error.
    asio::error_code Bind(const asio::ip::tcp::endpoint& endpoint);
    /// Starts to listen at the occupied address. Returns why that is impossible, or no error.
    asio::error_code Listen();

    /// Drops all hosts and gives up the address, so that new ones are refused.
    void GoOffline();
    /// Listens again where it did before. Returns why that is impossible, or no error.
    asio::error_code GoOnline();
    bool IsOnline() const { return listener_ != nullptr; }

    /// The address and port that hosts can connect to while it is online.
    asio::ip::tcp::endpoint Endpoint() const { return endpoint_; }

    std::size_t HostCount() const { return connections_.size(); }

    /// Sends the station's pending text. Call it after everything that may have changed the station.
    void SendAll();

private:
    class Connection;
    friend class Connection;

    void CloseListener();
    void Welcome(asio::ip::tcp::socket socket);
    void Drop(Station::HostId host);
    void AwaitStation();

    asio::io_context& context_;
    asio::steady_timer stationTimer_;
    Station& station_;
    Surroundings surroundings_;
    std::shared_ptr<Listener> listener_;  // none while offline
    asio::ip::tcp::endpoint endpoint_;
    Station::HostId lastHost_ = 0;
    std::map<Station::HostId, std::shared_ptr<Connection>> connections_;
};

}  // namespace Morquil::Simulator
