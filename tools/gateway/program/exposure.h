#pragma once

#include <string>

#include "gateway/config/config.h"

namespace Morquil::Gateway {

/// Why the gateway must not be reachable as configured; empty if it may. On this machine only, anything goes; beyond it
/// requests have to say who sends them, over an encrypted connection unless the operator has chosen otherwise.
/// `isOpen`: there is neither a user nor a token.
std::string ExposureFault(const ServerConfig& server, bool isOpen);

}  // namespace Morquil::Gateway
