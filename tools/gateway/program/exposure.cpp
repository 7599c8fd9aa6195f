#include "gateway/program/exposure.h"

#include <boost/asio/ip/address.hpp>

namespace Morquil::Gateway {

std::string ExposureFault(const ServerConfig& server, bool isOpen) {
    boost::system::error_code error;
    const auto address = boost::asio::ip::make_address(server.address, error);
    if (error || address.is_loopback()) {
        return {};  // a text that is no address is refused when the gateway listens
    }
    const std::string reachable = "other machines can reach " + server.address + ": ";
    if (isOpen) {
        return reachable + "add a user first, with morquil-gateway user add NAME --role admin";
    }
    if (!server.IsSecure() && !server.insecure) {
        return reachable + "set certificate and key in gateway.toml, or insecure = true to do without encryption";
    }
    return {};
}

}  // namespace Morquil::Gateway
