// All devices.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "gateway/fleet/fleet_device.h"

namespace Morquil::Gateway {

/// Threads: the context's.
class Fleet {
public:
    using Devices = std::map<std::string, std::unique_ptr<FleetDevice>, std::less<>>;

    /// Before the context is destroyed, `Stop` has to be called.
    Fleet(boost::asio::io_context& context, FleetListener& listener);

    /// Connects, edits and removes until the fleet is what `entries` say. A device whose address stays the same stays
    /// connected.
    void Become(const std::vector<DeviceEntry>& entries);

    const Devices& All() const { return devices_; }
    /// Null for an unknown name.
    FleetDevice* Find(std::string_view name) const;
    /// Grows with every edit of the fleet.
    std::uint64_t Revision() const { return revision_; }
    /// The names of devices, for suggestions.
    std::vector<std::string_view> Names() const;

    /// Renames a device without ending its connection. Neither the old name may be missing nor the new one taken.
    void Rename(std::string_view name, const std::string& newName);

    BlockingWork& Blocking() { return worker_; }

    /// Ends all connections, and waits for that.
    void Stop();

private:
    void TickLater();

    boost::asio::io_context& context_;
    FleetListener& listener_;
    BlockingWork worker_;
    Devices devices_;
    std::uint64_t revision_ = 1;
    Alarm tick_;
};

}  // namespace Morquil::Gateway
