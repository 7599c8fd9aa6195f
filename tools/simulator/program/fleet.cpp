#include "simulator/program/fleet.h"

#include <limits>
#include <string>

namespace Morquil::Simulator {

namespace {

std::uint32_t FirstAddress(const Options& options, asio::error_code& error) {
    return asio::ip::make_address_v4(options.address, error).to_uint();
}

}  // namespace

DeviceIdentity IdentityOf(const Options& options, unsigned number) {
    DeviceIdentity identity = options.identity;
    if (options.DeviceCount() > 1) {
        asio::error_code ignored;  // reported when the device is to listen
        identity.modelName += " " + std::to_string(number);
        identity.friendlyName = "Rack " + std::to_string(number);
        identity.ipAddress = FirstAddress(options, ignored) + number - 1;
    }
    return identity;
}

Faults FaultsOf(const Options& options, unsigned number) {
    Faults faults = options.faults;
    faults.seed += number - 1;
    return faults;
}

bool HasAddresses(const Options& options) {
    asio::error_code ignored;
    const std::uint32_t following = std::numeric_limits<std::uint32_t>::max() - FirstAddress(options, ignored);
    return options.DeviceCount() - 1 <= following;
}

asio::ip::address AddressOf(const Options& options, unsigned number, asio::error_code& error) {
    if (number == 1) {
        return asio::ip::make_address(options.address, error);
    }
    return asio::ip::address_v4(FirstAddress(options, error) + number - 1);
}

}  // namespace Morquil::Simulator
