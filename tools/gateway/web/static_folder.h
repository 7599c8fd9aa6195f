#pragma once

#include <optional>
#include <string>

#include "gateway/api/request.h"
#include "gateway/api/response.h"

namespace Morquil::Gateway {

/// A file of a folder, read anew for each request: for the development of the panel. Nothing if there is no such file,
/// or if it is not below the folder.
std::optional<Response> ReadFromFolder(const std::string& folder, const Request& request);

}  // namespace Morquil::Gateway
