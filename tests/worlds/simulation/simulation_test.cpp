// Thousands of lives of a device object, each in a random world of its own.
//   MORQUIL_SEEDS=N  how many worlds (1000)
//   MORQUIL_SEED=K   only this one, with its trace
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "tests/worlds/simulation/environment.h"
#include "tests/worlds/simulation/quiet_console.h"
#include "tests/worlds/simulation/scenario.h"

namespace Morquil::Testing::Worlds {
namespace {

Outcome RunSeed(std::uint64_t seed) {
    const QuietConsole quiet;
    SeededDice dice(seed);
    return RunScenario(dice, "MORQUIL_SEED=" + std::to_string(seed));
}

TEST(Simulation, KeepsEveryRuleInEveryWorld) {
    const bool isOne = FromEnvironment("MORQUIL_SEED", 0) != 0;
    const std::uint64_t first = FromEnvironment("MORQUIL_SEED", 1);
    const std::uint64_t count = isOne ? 1 : FromEnvironment("MORQUIL_SEEDS", 1000);
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        const Outcome outcome = RunSeed(seed);
        if (isOne || !outcome.failure.empty()) {
            std::fprintf(stderr, "%s", outcome.trace.c_str());
        }
        ASSERT_EQ(outcome.failure, "") << "MORQUIL_SEED=" << seed;
    }
}

TEST(Simulation, RepeatsItselfForTheSameSeed) {
    for (std::uint64_t seed = 1; seed <= 50; ++seed) {
        EXPECT_EQ(RunSeed(seed).trace, RunSeed(seed).trace) << "seed " << seed;
    }
}

TEST(Simulation, DiffersForOtherSeeds) {
    EXPECT_NE(RunSeed(1).trace, RunSeed(2).trace);
}

}  // namespace
}  // namespace Morquil::Testing::Worlds
