#include "protocol/blocks/noise_reduction.h"

#include <gtest/gtest.h>

#include "tests/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Noise = NoiseReductionChangeSet;
using Available = NoiseReductionAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;

// clang-format off
const GoldenBlock<Noise> noise{"NOISE REDUCTION", {
    {"Enabled: true",       &Noise::enabled,     true},
    {"Bias: -3",            &Noise::bias,        -3},
    {"Split screen: false", &Noise::splitScreen, false},
    {"Red overlay: true",   &Noise::redOverlay,  true}}};

const GoldenBlock<Available> available{"NOISE REDUCTION AVAILABILITY", {
    {"Bias range: -10 10",              &Available::biasRange,               Limits32{-10, 10}},
    {"Noise reduction available: true", &Available::noiseReductionAvailable, true}}};
// clang-format on

TEST(NoiseReductionBlock, ReadsAndWritesEveryLine) {
    noise.ExpectReadsAndWritesEveryLine();
}

TEST(NoiseReductionBlock, WritesItsLinesInOrder) {
    noise.ExpectWritesItsLinesInOrder();
}

TEST(NoiseReductionBlock, ReportsBadValuesAndUnknownKeys) {
    noise.ExpectReports({NotAValue("Enabled", "1"),
                         NotAValue("Bias", "low"),
                         NotAValue("Split screen", "half"),
                         NotAValue("Red overlay", "blue"),
                         {"Strength: 5", "Unknown noise reduction line \"Strength\"\n"}});
}

TEST(NoiseReductionAvailabilityBlock, ReadsAndWritesEveryLine) {
    available.ExpectReadsAndWritesEveryLine();
}

TEST(NoiseReductionAvailabilityBlock, WritesItsLinesInOrder) {
    available.ExpectWritesItsLinesInOrder();
}

TEST(NoiseReductionAvailabilityBlock, ReportsBadValuesAndUnknownKeys) {
    available.ExpectReports({NotARange("Bias range", "-10"),
                             NotAValue("Noise reduction available", "no"),
                             {"Bias: 1 2", "Unknown supported noise reduction line \"Bias\"\n"}});
}

}  // namespace
}  // namespace Morquil
