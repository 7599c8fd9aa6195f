#pragma once

#include <functional>
#include <memory>

#include "gateway/web/socket.h"
#include "gateway/web/web_context.h"

namespace Morquil::Gateway {

/// Serves server-sent events until the client, or the hub, ends the stream.
void ServeEvents(WebContext& web, const std::shared_ptr<Socket>& socket, const Request& request, const View& view,
                 std::function<void()> onClosed);

}  // namespace Morquil::Gateway
