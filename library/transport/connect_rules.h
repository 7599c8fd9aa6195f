#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace Morquil {

/// How long a blocking `Open` waits for the connection.
inline constexpr std::uint32_t connectLimitMs = 2000;

/// Time-out of a wait that does not include the socket.
inline constexpr std::uint32_t idleTimeoutMs = 1000;

/// Whether `host` and `port` name something to connect to.
inline bool IsConnectable(const std::string& host, std::uint32_t port) {
    return !host.empty() && port != 0 && port <= std::numeric_limits<std::uint16_t>::max();
}

}  // namespace Morquil
