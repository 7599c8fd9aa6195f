#pragma once

#include <asio.hpp>
#include <cstdint>
#include <deque>
#include <string>

#include "simulator/program/options.h"
#include "simulator/program/server.h"

namespace Morquil::Simulator {

/// The servers of the program's devices, numbered from 1 on, each at its own address.
class Servers {
public:
    /// `options` is not owned.
    explicit Servers(const Options& options) : options_(options) {}

    void Add(asio::io_context& context, Station& station, Server::Surroundings surroundings);
    unsigned Count() const { return static_cast<unsigned>(servers_.size()); }
    Server& Of(unsigned number) { return servers_[number - 1]; }
    const Server& Of(unsigned number) const { return servers_[number - 1]; }

    /// Starts to listen with all servers. Afterwards there are none if one of them cannot listen.
    /// Returns: why it cannot, or an empty text.
    std::string Listen();
    /// Listens again where the server listened before.
    /// Returns: why that is impossible, or an empty text.
    std::string GoOnline(unsigned number);

    // For people, once the servers listen:

    /// The address of the only server, or of the first and the last.
    std::string Addresses() const;
    std::string Status(unsigned number) const;

private:
    std::string DescriptorProblem() const;
    std::string ListeningProblem();
    std::string BindingProblem();
    asio::error_code Bind(unsigned number, std::uint16_t port);
    std::string Address(unsigned number, std::uint16_t port) const;
    std::string Address(unsigned number) const { return Address(number, Of(number).Endpoint().port()); }

    const Options& options_;
    std::deque<Server> servers_;
};

}  // namespace Morquil::Simulator
