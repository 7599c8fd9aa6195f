#pragma once

#include <string>
#include <vector>

#include "tests/system/host/host_observer.h"
#include "tests/system/host/host_text.h"
#include "tests/system/host/raw_com.h"
#include "tests/system/module/loaded_library.h"

namespace Morquil::Testing {

using Strings = std::vector<std::string>;

/// The library under test. Stays loaded, as hosts keep it.
const LoadedLibrary& Library();

/// One more reference to the discovery object of the process.
RawObject Discovery();

// clang-format off
/// The slots of the discovery object and of a device.
namespace Slot {
enum Discovery { connect = 3, connectAsync = 4, disconnect = 5, findDevices = 6 };
enum Device {
    addConnectionObserver = 3, removeConnectionObserver = 4, addPropertyObserver = 5, removePropertyObserver = 6,
    getDeviceName = 7, getSoftwareVersion = 8, getFpgaVersion = 9, getPanelLock = 10, getRemoteLock = 11,
    getNetworkUpdateSupported = 12, isConversionSupported = 13, setPanelLock = 14,
    saveSettingsFile = 15, loadSettingsFile = 16
};
}  // namespace Slot
// clang-format on

/// The outcome of a synchronous connect.
struct ConnectOutcome {
    Result result;
    std::string reason;
    RawObject device;
};
ConnectOutcome Connect(const std::string& address);

/// Starts to connect. Returns: the device; the observer is notified of its connection.
RawObject ConnectAsync(const std::string& address, HostObserver& observer);

void Disconnect(const RawObject& device);

/// The known name of the device; empty if none is known.
std::u16string DeviceName(const RawObject& device);

}  // namespace Morquil::Testing
