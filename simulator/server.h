#pragma once

#include <asio.hpp>
#include <map>
#include <memory>

#include "simulator/simulated_device.h"

namespace Morquil::Simulator {

/// Puts a simulated device on the network. Everything runs on the thread that runs the `io_context`.
class Server {
public:
    /// `device` is not owned.
    Server(asio::io_context& context, SimulatedDevice& device);
    ~Server();

    /// Starts to listen. Returns why that is impossible, or no error.
    asio::error_code Listen(const asio::ip::tcp::endpoint& endpoint);

    /// The address and port that hosts can connect to.
    asio::ip::tcp::endpoint Endpoint() const;

    /// Sends what the device has to say. To be called after everything that may have changed it.
    void SendAll();

private:
    class Connection;
    friend class Connection;

    void Accept();
    void Drop(SimulatedDevice::HostId host);

    asio::ip::tcp::acceptor acceptor_;
    SimulatedDevice& device_;
    SimulatedDevice::HostId lastHost_ = 0;
    std::map<SimulatedDevice::HostId, std::shared_ptr<Connection>> connections_;
};

}  // namespace Morquil::Simulator
