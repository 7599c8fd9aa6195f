#pragma once

#include <string_view>

namespace Morquil::Simulator {

// What a device says of each block of a host, before anything else.
inline constexpr std::string_view acknowledged = "ACK\n\n";
inline constexpr std::string_view refused = "NACK\n\n";

}  // namespace Morquil::Simulator
