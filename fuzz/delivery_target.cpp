// What a host learns about its changes: the bytes choose what it sets, which receipts it opens, marks and cancels, when
// it disconnects, what the device answers and reports, which thread goes first, and how time passes.
#include <cstdio>
#include <string_view>

#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "fuzz/written_dice.h"
#include "tests/worlds/simulation/delivery_world.h"
#include "tests/worlds/simulation/quiet_console.h"

int TestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace Morquil;
    Fuzz::WrittenDice dice({reinterpret_cast<const char*>(bytes), size});
    const Testing::Worlds::Outcome outcome = [&] {
        const Testing::Worlds::QuietConsole quiet;
        return Testing::Worlds::RunDeliveryScenario(dice, "this input");
    }();
    if (!outcome.failure.empty()) {
        std::fprintf(stderr, "%s", outcome.trace.c_str());
    }
    Fuzz::Require(outcome.failure.empty(), outcome.failure.c_str());
    return 0;
}
