// A host that connects and disconnects for weeks.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/kit/network_device.h"
#include "tests/kit/process_counts.h"
#include "tests/system/host/host.h"

namespace Morquil::Testing {
namespace {

/// The device's complete state, so that nothing is left to request.
std::string FullDump() {
    std::ifstream file(MORQUIL_TEST_DATA "/full_dump.txt", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

long Cycles() {
    const char* const wanted = std::getenv("MORQUIL_CYCLES");
    return wanted != nullptr ? std::atol(wanted) : 0;
}

TEST(Cycles, OfConnectingUseNoMemory) {
    const long cycles = Cycles();
    if (cycles == 0) {
        GTEST_SKIP() << "runs where MORQUIL_CYCLES says how often";
    }
    constexpr std::size_t allowedGrowth = std::size_t{1} << 20;
    NetworkDevice device({FullDump, [](std::string_view) { return std::string(); }});
    std::size_t before = 0;
    std::size_t handlesBefore = 0;
    for (long cycle = 0; cycle < cycles; ++cycle) {
        if (cycle == cycles / 10) {
            before = ProcessMemory();
            handlesBefore = OpenHandleCount();
        }
        ConnectOutcome outcome = Connect(device.Address());
        ASSERT_EQ(outcome.result, ok) << "in cycle " << cycle;
        Disconnect(outcome.device);
        ASSERT_EQ(outcome.device.Release(), 0U);
        ASSERT_TRUE(device.AwaitHostGone());
    }
    EXPECT_LE(ProcessMemory(), before + allowedGrowth);
    EXPECT_LE(OpenHandleCount(), handlesBefore + systemsOwn.handles);
    RecordProperty("GrowthInBytes",
                   std::to_string(static_cast<long long>(ProcessMemory()) - static_cast<long long>(before)));
}

}  // namespace
}  // namespace Morquil::Testing
