// From responses to bytes.
#pragma once

#include <string>

#include "gateway/api/request.h"
#include "gateway/api/response.h"

namespace Morquil::Gateway {

/// The response's head: the status line and all headers. With a source the body's end is the connection's.
std::string HeadOf(const Request& request, const Response& response, bool keepsAlive);

/// The head of an endless response of server-sent events.
std::string StreamHead(const Request& request);

}  // namespace Morquil::Gateway
