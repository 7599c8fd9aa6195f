#pragma once

#include <string>

#include "tests/system/gateway/http_client.h"

namespace Morquil::Testing {

/// Whether `value` has the shape `schema`, as far as the gateway's document uses the language of schemas.
/// Returns: where it has not, and why; empty if it has. `document` is what references point into.
std::string ShapeFault(const Json& document, const Json& schema, const Json& value, const std::string& where = "");

}  // namespace Morquil::Testing
