// What every connection works with.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "gateway/api/api.h"
#include "gateway/config/config.h"
#include "gateway/stream/hub.h"

namespace Morquil::Gateway {

struct WebContext {
    boost::asio::io_context& context;
    Api& api;
    Hub& hub;
    const ServerConfig& config;
    /// The panel's files, the metrics and the health: what is not below /api. Nothing if there is no such file.
    std::function<std::optional<Response>(const Request&)> files;
};

/// A random name for a request: 16 hexadecimal digits.
std::string NewRequestId();

}  // namespace Morquil::Gateway
