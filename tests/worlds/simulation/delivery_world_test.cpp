// Hundreds of connections on which a host follows its changes, each in a random world of its own.
//   MORQUIL_SEEDS=N  how many worlds (500)
//   MORQUIL_SEED=K   only this one, with its trace
#include "tests/worlds/simulation/delivery_world.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>

#include "tests/worlds/simulation/environment.h"
#include "tests/worlds/simulation/quiet_console.h"

namespace Morquil::Testing::Worlds {
namespace {

Outcome RunSeed(std::uint64_t seed) {
    const QuietConsole quiet;
    SeededDice dice(seed);
    return RunDeliveryScenario(dice, "MORQUIL_SEED=" + std::to_string(seed));
}

TEST(DeliveryWorlds, NotifyEachReceiptOfWhatBecameOfItsChanges) {
    const bool isOne = FromEnvironment("MORQUIL_SEED", 0) != 0;
    const std::uint64_t first = FromEnvironment("MORQUIL_SEED", 1);
    const std::uint64_t count = isOne ? 1 : FromEnvironment("MORQUIL_SEEDS", 500);
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        const Outcome outcome = RunSeed(seed);
        if (isOne || !outcome.failure.empty()) {
            std::fprintf(stderr, "%s", outcome.trace.c_str());
        }
        ASSERT_EQ(outcome.failure, "") << "MORQUIL_SEED=" << seed;
    }
}

TEST(DeliveryWorlds, RepeatThemselvesForTheSameSeed) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        EXPECT_EQ(RunSeed(seed).trace, RunSeed(seed).trace) << "seed " << seed;
    }
}

/// A rule that is never put to the test would prove nothing.
TEST(DeliveryWorlds, ContainEveryOutcome) {
    std::map<std::string, int> worldsWith{
        {"answered", 0},  {"1 confirmed", 0},    {" 1 adjusted", 0}, {"2 confirmed", 0}, {"1 unanswered", 0},
        {" 1 unsent", 0}, {"cancel receipt", 0}, {"NACK", 0},        {"sent PING", 0},   {"a report is notified", 0},
        {"disconnect", 0}};
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        const std::string trace = RunSeed(seed).trace;
        for (auto& [text, count] : worldsWith) {
            count += trace.find(text) != std::string::npos ? 1 : 0;
        }
    }
    for (const auto& [text, count] : worldsWith) {
        EXPECT_GE(count, 3) << text;
    }
}

}  // namespace
}  // namespace Morquil::Testing::Worlds
