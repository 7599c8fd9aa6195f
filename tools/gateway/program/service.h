// The gateway as a service of the system.
#pragma once

#include <boost/asio/io_context.hpp>
#include <string>

#include "gateway/fleet/alarm.h"

namespace Morquil::Gateway {

/// Without a service manager nothing of it has an effect.
/// Threads: the context's.
class Service {
public:
    explicit Service(boost::asio::io_context& context) : beat_(context) {}

    /// The gateway serves. From now on the watchdog is fed by the context's thread: when that thread hangs, the manager
    /// restarts the gateway.
    void Ready(const std::string& status);
    void Reloading();
    void Reloaded(const std::string& status);
    void Stopping();

private:
    void Beat();

    Alarm beat_;
};

}  // namespace Morquil::Gateway
