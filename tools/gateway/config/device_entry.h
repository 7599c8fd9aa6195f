// What the gateway is configured to know of a device.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Gateway {

struct DeviceEntry {
    std::string name;     // in addresses and in the API: [a-z0-9][a-z0-9-]{0,62}
    std::string label;    // for people; any text
    std::string address;  // host name or IPv4 address
    std::string room = {};
    std::vector<std::string> tags = {};
    bool enabled = true;

    bool operator==(const DeviceEntry& other) const = default;
};

bool IsDeviceName(std::string_view name);

/// Why the gateway does not accept an entry, in a sentence; nothing if it does.
std::optional<std::string> FaultOf(const DeviceEntry& entry);

}  // namespace Morquil::Gateway
