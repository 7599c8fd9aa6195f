#pragma once

#include <string>
#include <vector>

#include "gateway/config/device_entry.h"

namespace Morquil::Gateway {

/// A simulated fleet, on loopback addresses of its own, that ends with this program.
class DemoFleet {
public:
    DemoFleet() = default;
    DemoFleet(const DemoFleet&) = delete;
    DemoFleet& operator=(const DemoFleet&) = delete;
    ~DemoFleet();

    /// Starts morquil-sim, which is next to this program or where programs are installed.
    /// Returns: why that is impossible; empty if it has started.
    std::string Start(unsigned devices);
    std::vector<DeviceEntry> Entries() const;

private:
    /// Returns: whether they listen.
    bool AwaitDevices();

    int process_ = -1;
    unsigned network_ = 0;
    unsigned devices_ = 0;
};

}  // namespace Morquil::Gateway
