// A device object's whole life: the bytes choose what the device sends (including arbitrary bytes) and does, what the
// host calls, also inside its callbacks, which thread goes first, and how time passes.
#include <cstdio>
#include <string_view>

#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "fuzz/written_dice.h"
#include "tests/worlds/simulation/quiet_console.h"
#include "tests/worlds/simulation/scenario.h"

int TestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace Morquil;
    Fuzz::WrittenDice dice({reinterpret_cast<const char*>(bytes), size});
    const Testing::Worlds::Outcome outcome = [&] {
        const Testing::Worlds::QuietConsole quiet;
        return Testing::Worlds::RunScenario(dice, "this input");
    }();
    if (!outcome.failure.empty()) {
        std::fprintf(stderr, "%s", outcome.trace.c_str());
    }
    Fuzz::Require(outcome.failure.empty(), outcome.failure.c_str());
    return 0;
}
