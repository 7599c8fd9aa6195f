// Finds out what is wrong with an address, without the library, which only says "no answer".
#pragma once

#include <boost/asio/io_context.hpp>
#include <functional>
#include <memory>
#include <string>

#include "gateway/fleet/greeting.h"

namespace Morquil::Gateway {

/// The port of every device.
inline constexpr unsigned short devicePort = 9800;

/// One attempt to resolve, connect, and read a greeting; at most five seconds. Keeps itself alive until it has called
/// `done`, unless it is cancelled.
/// Threads: the context's.
class Probe : public std::enable_shared_from_this<Probe> {
public:
    using Done = std::function<void(Diagnosis)>;

    static std::shared_ptr<Probe> Start(boost::asio::io_context& context, std::string address, Done done);
    /// `done` is not called any more.
    virtual void Cancel() = 0;
    virtual ~Probe() = default;
};

}  // namespace Morquil::Gateway
