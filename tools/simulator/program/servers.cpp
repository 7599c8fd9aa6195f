#include "simulator/program/servers.h"

#include <utility>

#include "simulator/program/descriptor_limit.h"
#include "simulator/program/fleet.h"

namespace Morquil::Simulator {

namespace {

/// Descriptors of a fleet besides those of its devices: standard streams, files, and the system's own.
constexpr std::size_t otherDescriptors = 64;

/// A port that the system has chosen for the first device may be taken at the address of another. So many are tried.
constexpr int chosenPorts = 20;

std::string CannotListen(const std::string& address, asio::error_code error) {
    return "cannot listen on " + address + ": " + error.message();
}

}  // namespace

void Servers::Add(asio::io_context& context, Station& station, Server::Surroundings surroundings) {
    servers_.emplace_back(context, station, std::move(surroundings));
}

std::string Servers::Listen() {
    std::string problem = DescriptorProblem();
    if (problem.empty()) {
        problem = ListeningProblem();
    }
    if (!problem.empty()) {
        servers_.clear();
    }
    return problem;
}

std::string Servers::DescriptorProblem() const {
    // A listening socket and at least one host for each device.
    const std::size_t needed = std::size_t{2} * Count() + otherDescriptors;
    const std::size_t allowed = Count() > 1 ? RaiseDescriptorLimit(needed) : needed;
    if (allowed >= needed) {
        return {};
    }
    return std::to_string(Count()) + " devices need " + std::to_string(needed) +
           " descriptors, and the system allows " + std::to_string(allowed) +
           "; raise its limit (ulimit -Hn) or start fewer devices";
}

std::string Servers::ListeningProblem() {
    // All addresses are occupied before a host can connect to any of them.
    std::string problem = BindingProblem();
    for (int port = 1; port < chosenPorts && !problem.empty() && options_.port == 0; ++port) {
        problem = BindingProblem();
    }
    for (unsigned number = 1; number <= Count() && problem.empty(); ++number) {
        if (const asio::error_code error = Of(number).Listen()) {
            problem = CannotListen(Address(number), error);
        }
    }
    return problem;
}

std::string Servers::BindingProblem() {
    std::uint16_t port = options_.port;
    for (unsigned number = 1; number <= Count(); ++number) {
        if (const asio::error_code error = Bind(number, port)) {
            return CannotListen(Address(number, port), error);
        }
        port = Of(number).Endpoint().port();
    }
    return {};
}

asio::error_code Servers::Bind(unsigned number, std::uint16_t port) {
    asio::error_code error;
    const asio::ip::address address = AddressOf(options_, number, error);
    return error ? error : Of(number).Bind({address, port});
}

std::string Servers::Address(unsigned number, std::uint16_t port) const {
    asio::error_code ignored;
    const std::string address = number == 1 ? options_.address : AddressOf(options_, number, ignored).to_string();
    return address + ":" + std::to_string(port);
}

std::string Servers::GoOnline(unsigned number) {
    const asio::error_code error = Of(number).GoOnline();
    return error ? CannotListen(Address(number), error) + "; still offline" : std::string();
}

std::string Servers::Addresses() const {
    if (Count() == 1) {
        return Address(1);
    }
    return Address(1) + " to " + Address(Count()) + " (" + std::to_string(Count()) + " devices)";
}

std::string Servers::Status(unsigned number) const {
    const Server& server = Of(number);
    return Address(number) + (server.IsOnline() ? " online" : " offline") +
           ", hosts: " + std::to_string(server.HostCount());
}

}  // namespace Morquil::Simulator
