#include "protocol/blocks/noise_reduction.h"

#include <gtest/gtest.h>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Noise = NoiseReductionChangeSet;
using NoiseReductionAvailable = NoiseReductionAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;

// clang-format off
const GoldenBlock<Noise> noise{"NOISE REDUCTION", {
    {"Enabled: true",       &Noise::enabled,     true},
    {"Bias: -3",            &Noise::bias,        -3},
    {"Split screen: false", &Noise::splitScreen, false},
    {"Red overlay: true",   &Noise::redOverlay,  true}}};

const GoldenBlock<NoiseReductionAvailable> noiseReductionAvailable{"NOISE REDUCTION AVAILABILITY", {
    {"Bias range: -10 10",              &NoiseReductionAvailable::biasRange,               Limits32{-10, 10}},
    {"Noise reduction available: true", &NoiseReductionAvailable::noiseReductionAvailable, true}}};
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
    noiseReductionAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(NoiseReductionAvailabilityBlock, WritesItsLinesInOrder) {
    noiseReductionAvailable.ExpectWritesItsLinesInOrder();
}

TEST(NoiseReductionAvailabilityBlock, ReportsBadValuesAndUnknownKeys) {
    noiseReductionAvailable.ExpectReports({NotARange("Bias range", "-10"),
                                           NotAValue("Noise reduction available", "no"),
                                           {"Bias: 1 2", "Unknown supported noise reduction line \"Bias\"\n"}});
}

}  // namespace
}  // namespace Morquil
