#include "features/noise_reduction.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Noise = CMorquilNoiseReduction;
class NoiseReductionFeature : public FeatureTest<Noise> {};

TEST_F(NoiseReductionFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetEnabled(5), "Enabled: true\n");
    ExpectSent(feature.SetEnabled(0), "Enabled: false\n");
    ExpectSent(feature.SetBias(-3), "Bias: -3\n");
    ExpectSent(feature.SetSplitScreen(-1), "Split screen: true\n");
    ExpectSent(feature.SetRedOverlay(1), "Red overlay: true\n");
}

TEST_F(NoiseReductionFeature, AnswersFromTheReport) {
    ExpectGets(&Noise::GetEnabled, 1, "Enabled: true\n");
    ExpectGets(&Noise::GetBias, -3, "Bias: -3\n");
    ExpectGets(&Noise::GetSplitScreen, 0, "Split screen: false\n");
    ExpectGets(&Noise::GetRedOverlay, 1, "Red overlay: true\n");
    ExpectGetsRange(&Noise::GetBiasRange, -5, 5, "Bias range: -5 5\n");
    ExpectFlag(&Noise::IsNoiseReductionAvailable, "Noise reduction available");
}

TEST_F(NoiseReductionFeature, NotifiesOfEveryKindOfAvailability) {
    ExpectNotifiedOfEachAvailability(
        "Bias range: -3 3\nNoise reduction available: true\nNoise reduction available: false\n");
}

}  // namespace
}  // namespace Morquil::Testing
