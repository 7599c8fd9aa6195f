#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The device's network settings. Addresses are whole 32-bit numbers, in decimal on the wire.
struct NetworkConfigChangeSet {
    TextField<49, Compare::AnyCase> friendlyName;
    Field<bool> dhcpEnabled;
    Field<std::uint32_t> ipAddress;
    Field<std::uint32_t> gateway;
    Field<std::uint32_t> subnet;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "NETWORK CONFIG", .unknownKeyText = "Unknown network config line \"%s\"\n"},
        Key{"Friendly name", &NetworkConfigChangeSet::friendlyName, Text{}},
        Key{"DHCP enabled",  &NetworkConfigChangeSet::dhcpEnabled,  YesNo{}}.Observed(),
        Key{"IP address",    &NetworkConfigChangeSet::ipAddress,    Unsigned{}}.Observed(),
        Key{"Gateway",       &NetworkConfigChangeSet::gateway,      Unsigned{}}.Observed(),
        Key{"Subnet",        &NetworkConfigChangeSet::subnet,       Unsigned{}}.Observed()};
    // clang-format on
};

using NetworkConfigMessage = TextProtocolMessage<NetworkConfigChangeSet>;

}  // namespace Morquil
