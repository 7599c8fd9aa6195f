#pragma once

#include <string_view>

namespace Morquil::Simulator {

// A device's answer to each block of a host, sent before anything else.
inline constexpr std::string_view acknowledged = "ACK\n\n";
inline constexpr std::string_view refused = "NACK\n\n";

}  // namespace Morquil::Simulator
