#include "features/video_proc_amp.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using ProcAmp = CMorquilVideoProcAmp;
class VideoProcAmpFeature : public FeatureTest<ProcAmp> {};

constexpr const char* allValues = "Gain: 1\nBlack: 2\nSaturation: 3\nHue: 4\nRY: 5\nBY: 6\nSharp: 7\n";
constexpr const char* allRanges =
    "Gain range: 0 1\nBlack range: 0 2\nSaturation range: 0 3\nHue range: 0 4\nRY range: 0 5\nBY range: 0 6\n"
    "Sharp range: 0 7\n";

TEST_F(VideoProcAmpFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetGain(-1), "Gain: -1\n");
    ExpectSent(feature.SetBlackLevel(2), "Black: 2\n");
    ExpectSent(feature.SetSaturation(3), "Saturation: 3\n");
    ExpectSent(feature.SetHue(-4), "Hue: -4\n");
    ExpectSent(feature.SetRy(5), "RY: 5\n");
    ExpectSent(feature.SetBy(6), "BY: 6\n");
    ExpectSent(feature.SetSharpness(INT_MIN), "Sharp: -2147483648\n");
    ExpectSent(feature.ResetAll(), "Reset: true\n");
    ExpectSent(feature.ResetValues(0x80000000), "ResetValues: -2147483648\n");
}

TEST_F(VideoProcAmpFeature, AnswersFromTheReport) {
    ExpectGets(&ProcAmp::GetGain, -1, "Gain: -1\n");
    ExpectGets(&ProcAmp::GetBlackLevel, 2, "Black: 2\n");
    ExpectGets(&ProcAmp::GetSaturation, 3, "Saturation: 3\n");
    ExpectGets(&ProcAmp::GetHue, -4, "Hue: -4\n");
    ExpectGets(&ProcAmp::GetRy, 5, "RY: 5\n");
    ExpectGets(&ProcAmp::GetBy, 6, "BY: 6\n");
    ExpectGets(&ProcAmp::GetSharpness, 0, "Sharp: 0\n");
}

TEST_F(VideoProcAmpFeature, AnswersTheReportedRanges) {
    ExpectGetsRange(&ProcAmp::GetGainRange, -1, 11, "Gain range: -1 11\n");
    ExpectGetsRange(&ProcAmp::GetBlackLevelRange, -2, 12, "Black range: -2 12\n");
    ExpectGetsRange(&ProcAmp::GetSaturationRange, -3, 13, "Saturation range: -3 13\n");
    ExpectGetsRange(&ProcAmp::GetHueRange, -4, 14, "Hue range: -4 14\n");
    ExpectGetsRange(&ProcAmp::GetRyRange, -5, 15, "RY range: -5 15\n");
    ExpectGetsRange(&ProcAmp::GetByRange, -6, 16, "BY range: -6 16\n");
    ExpectGetsRange(&ProcAmp::GetSharpnessRange, -7, 17, "Sharp range: -7 17\n");
}

TEST_F(VideoProcAmpFeature, SendsALevelBeyondTheReportedRange) {
    ReportAvailability("Gain range: -10 10\n");
    ExpectSent(feature.SetGain(100000), "Gain: 100000\n");
}

TEST_F(VideoProcAmpFeature, AnswersTheOldLevelUntilTheDeviceReportsTheNewOne) {
    Report("Gain: 1\n");
    int gain = 0;
    EXPECT_EQ(feature.SetGain(2), S_OK);
    EXPECT_EQ(feature.GetGain(&gain), S_OK);
    EXPECT_EQ(gain, 1);
    Report("Gain: 2\n");
    EXPECT_EQ(feature.GetGain(&gain), S_OK);
    EXPECT_EQ(gain, 2);
}

TEST_F(VideoProcAmpFeature, MergesPendingSettersIntoOneBlock) {
    EXPECT_EQ(feature.ResetAll(), S_OK);
    EXPECT_EQ(feature.SetHue(1), S_OK);
    EXPECT_EQ(feature.SetGain(2), S_OK);
    ExpectSent(feature.SetGain(3), "Gain: 3\nHue: 1\nReset: true\n");
}

TEST_F(VideoProcAmpFeature, FailsASetterThatCannotWakeTheSender) {
    client.canWake = false;
    EXPECT_EQ(feature.SetGain(1), E_FAIL);
}

TEST_F(VideoProcAmpFeature, ForgetsEveryLevelWhenTheDeviceReportsAReset) {
    Report(allValues);
    EXPECT_TRUE(IsNotifiedOf("Reset: true\nGain: 9\nResetValues: 3\n"));
    int level = 77;
    for (const auto getter : {&ProcAmp::GetGain, &ProcAmp::GetBlackLevel, &ProcAmp::GetSaturation, &ProcAmp::GetHue,
                              &ProcAmp::GetRy, &ProcAmp::GetBy, &ProcAmp::GetSharpness}) {
        EXPECT_EQ((feature.*getter)(&level), E_FAIL);
    }
    EXPECT_EQ(level, 77);
    EXPECT_EQ(feature.GetSettingsText(), "VIDEO PROC AMP:\nReset: true\n\n");
}

TEST_F(VideoProcAmpFeature, CountsEveryReportedResetAsAChange) {
    EXPECT_TRUE(IsNotifiedOf("Reset: true\n"));
    EXPECT_TRUE(IsNotifiedOf("Reset: true\n"));
    EXPECT_FALSE(IsNotifiedOf("Reset: false\n"));
}

TEST_F(VideoProcAmpFeature, IsIncompleteAfterAResetUntilTheLevelsCome) {
    Report(allValues);
    ReportAvailability(allRanges);
    ASSERT_TRUE(feature.IsCacheComplete());
    Report("Reset: true\n");
    EXPECT_FALSE(feature.IsCacheComplete());
    Report(allValues);
    EXPECT_TRUE(feature.IsCacheComplete());
}

TEST_F(VideoProcAmpFeature, KeepsTheRangesThroughAReset) {
    ReportAvailability("Gain range: 3 4\n");
    Report("Reset: true\n");
    int min = 0;
    int max = 0;
    EXPECT_EQ(feature.GetGainRange(&min, &max), S_OK);
    EXPECT_EQ(max, 4);
}

TEST_F(VideoProcAmpFeature, NeedsEveryLevelAndEveryRangeToBeComplete) {
    for (const bool ofRanges : {false, true}) {
        const std::string lines = ofRanges ? allRanges : allValues;
        for (std::size_t at = 0; at < lines.size(); at = lines.find('\n', at) + 1) {
            feature.ClearCache();
            std::string rest = lines;
            const std::string missing = rest.substr(at, rest.find('\n', at) + 1 - at);
            rest.erase(at, missing.size());
            Report(ofRanges ? allValues : rest);
            ReportAvailability(ofRanges ? rest : allRanges);
            EXPECT_FALSE(feature.IsCacheComplete()) << missing;
            ofRanges ? ReportAvailability(missing) : Report(missing);
            EXPECT_TRUE(feature.IsCacheComplete()) << missing;
        }
    }
}

}  // namespace
}  // namespace Morquil::Testing
