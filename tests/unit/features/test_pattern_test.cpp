#include "features/test_pattern.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Pattern = CMorquilTestPattern;
class TestPatternFeature : public FeatureTest<Pattern> {};

TEST_F(TestPatternFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetOutput(morquilAPITestPatternMultiburst), "Output: Multiburst\n");
    ExpectSent(feature.SetNoSignal(morquilAPITestPatternSmpteBars), "No signal: SMPTEBars\n");
    ExpectSent(feature.SetTone(morquilAPITestTone6KHz), "Test tone: Tone6KHz\n");
    ExpectSent(feature.SetMotion(2), "Motion: true\n");
    ExpectSent(feature.SetHorizMotion(-4), "Horizontal Rate: -4\n");
    ExpectSent(feature.SetVertMotion(5), "Vertical Rate: 5\n");
}

TEST_F(TestPatternFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Pattern::SetOutput, 6);
    ExpectBounded(&Pattern::SetNoSignal, 6);
    ExpectBounded(&Pattern::SetTone, 5);
}

TEST_F(TestPatternFeature, AnswersFromTheReport) {
    ExpectGets(&Pattern::GetOutput, morquilAPITestPatternNone, "Output: None\n");
    ExpectGets(&Pattern::GetNoSignal, morquilAPITestPatternGrid, "No signal: Grid\n");
    ExpectGets(&Pattern::GetTone, morquilAPITestTone750Hz, "Test tone: Tone750Hz\n");
    ExpectGets(&Pattern::GetMotion, 1, "Motion: true\n");
    ExpectGets(&Pattern::GetHorizMotion, -4, "Horizontal Rate: -4\n");
    ExpectGets(&Pattern::GetVertMotion, 5, "Vertical Rate: 5\n");
    ExpectGetsRange(&Pattern::GetMotionRange, -8, 8, "Motion range: -8 8\n");
}

TEST_F(TestPatternFeature, AnswersWhatIsAvailable) {
    ExpectOffers(&Pattern::IsTestPatternAvailable, 6, {0, 2, 5}, "Available test patterns: None Bars Multiburst\n");
    ExpectOffers(&Pattern::IsTestToneAvailable, 5, {4}, "Available test tones: Tone6KHz\n");
    ExpectFlag(&Pattern::IsMotionAvailable, "Motion");
}

TEST_F(TestPatternFeature, NotifiesOfEveryKindOfAvailability) {
    ExpectNotifiedOfEachAvailability(
        "Available test patterns: Bars\nAvailable test tones: Tone6KHz\nMotion: true\nMotion range: -1 1\n");
}

}  // namespace
}  // namespace Morquil::Testing
