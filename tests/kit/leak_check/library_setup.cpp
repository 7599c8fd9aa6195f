// The library as hosts use it: warmed up by a connection, and with its discovery object created.
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/leak_check/setup.h"
#include "tests/kit/process_counts.h"
#include "tests/system/host/host.h"

namespace Morquil::Testing {

void WarmUp() {
    ScriptedDevice device(CompleteDevice());
    Disconnect(Connect(device.Address()).device);
}

std::size_t IntentionallyKeptHandles() {
    constexpr std::size_t unloadings = 2;
    return unloadings * handlesOfAnUnloading;
}

unsigned long LiveReferences() {
    return Discovery().Release();
}

}  // namespace Morquil::Testing
