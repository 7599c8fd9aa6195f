#pragma once

#include <optional>

#include "gateway/api/request.h"
#include "gateway/api/response.h"

namespace Morquil::Gateway {

/// A file of the panel that the program contains; 304 if the browser has it already. Nothing if there is no such file.
std::optional<Response> PanelResponse(const Request& request);

}  // namespace Morquil::Gateway
