#pragma once

#include <nlohmann/json.hpp>

namespace Morquil::Description {

/// The whole description of the protocol and of the properties, as one document.
nlohmann::ordered_json DescribeAsJson();

}  // namespace Morquil::Description
