// Checks against what web pages of others make a browser send.
#pragma once

#include <optional>

#include "gateway/api/request.h"
#include "gateway/api/response.h"
#include "gateway/config/config.h"

namespace Morquil::Gateway {

/// The Host has to be a numeric address, "localhost", or a configured name: a name of somebody else's that leads here
/// would let that page read answers.
std::optional<Response> CheckHost(const Request& request, const ServerConfig& server);

/// A page that sends a request, other than to read, must come from here.
std::optional<Response> CheckOrigin(const Request& request);

/// A body has to be JSON: a form of another page is not.
std::optional<Response> CheckContentType(const Request& request);

}  // namespace Morquil::Gateway
