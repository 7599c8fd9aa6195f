// The command abandons an attempt to connect that it gives up, and leaves it to the end of the process: the wake-up
// handles of such an attempt stay open.
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/leak_check/setup.h"
#include "tests/kit/process_counts.h"
#include "tests/system/command/invocation.h"

namespace Morquil::Testing {

void WarmUp() {
    ScriptedDevice device(CompleteDevice());
    RunCommand(device.Address(), {"get", "device.name"});
}

std::size_t IntentionallyKeptHandles() {
    constexpr std::size_t attemptsGivenUp = 12;
    return attemptsGivenUp * handlesOfAnAttempt;
}

unsigned long LiveReferences() {
    return 0;
}

}  // namespace Morquil::Testing
