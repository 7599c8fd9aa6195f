#pragma once

#include <functional>
#include <memory>

#include "gateway/web/socket.h"
#include "gateway/web/web_context.h"

namespace Morquil::Gateway {

/// Whether the client asks for a WebSocket.
bool IsUpgrade(const Request& request);

/// Serves the events of the stream as text messages, and takes commands, until one side ends it.
void ServeWebSocket(WebContext& web, const std::shared_ptr<Socket>& socket, const Request& request, const View& view,
                    std::function<void()> onClosed);

}  // namespace Morquil::Gateway
