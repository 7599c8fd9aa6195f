#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "tests/kit/scripted_device.h"
#include "tests/system/host/host_observer.h"
#include "tests/system/host/raw_com.h"

namespace Morquil::Testing {

/// Every property set that observers can be registered for.
extern const std::vector<const char*> propertySets;

/// The host's view of a device played by the test: one observer for all property sets, and a way to know when what the
/// device has sent is in the mirror.
class WatchedDevice {
public:
    /// `device` is the scripted device's counterpart in the library. Both remain the caller's.
    WatchedDevice(ScriptedDevice& script, const RawObject& device);
    ~WatchedDevice();
    WatchedDevice(const WatchedDevice&) = delete;
    WatchedDevice& operator=(const WatchedDevice&) = delete;

    /// The device sends `text`, which ends at the end of a block. Returns once it is in the mirror: the property sets
    /// notified since the last call, in that order.
    std::string Report(const std::string& text);

private:
    void Note(const std::string& id);

    ScriptedDevice& script_;
    const RawObject& device_;
    int reports_ = 0;

    std::mutex lock_;
    std::condition_variable reached_;
    std::u16string awaitedName_;
    bool nameCame_ = false;
    std::string notified_;

    PropertyObserver observer_;
};

}  // namespace Morquil::Testing
