#pragma once

#include <nlohmann/json.hpp>

namespace Morquil::Gateway {

/// Keeps members in the order in which they are written.
using Json = nlohmann::ordered_json;

}  // namespace Morquil::Gateway
