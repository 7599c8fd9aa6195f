#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace Morquil {

/// How long a blocking `Open` waits for the connection to stand.
inline constexpr std::uint32_t connectLimitMs = 2000;

/// Time-out of a wait that leaves the socket out.
inline constexpr std::uint32_t idleTimeoutMs = 1000;

/// Whether there is anything to connect to.
inline bool IsConnectable(const std::string& host, std::uint32_t port) {
    return !host.empty() && port != 0 && port <= std::numeric_limits<std::uint16_t>::max();
}

}  // namespace Morquil
