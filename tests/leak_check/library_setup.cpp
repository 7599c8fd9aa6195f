// The library as hosts use it: warmed up by a connection, and with its discovery object created.
#include "tests/host/complete_device.h"
#include "tests/host/host.h"
#include "tests/leak_check/setup.h"

namespace Morquil::Testing {

void WarmUp() {
    ScriptedDevice device(Test::CompleteDevice());
    Test::Disconnect(Test::Connect(device.Address()).device);
}

std::size_t HandlesLeftOnPurpose() {
    return 0;
}

unsigned long LiveReferences() {
    return Test::Discovery().Release();
}

}  // namespace Morquil::Testing
