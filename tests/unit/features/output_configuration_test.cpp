#include "features/output_configuration.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Output = CMorquilOutputConfiguration;
class OutputConfigurationFeature : public FeatureTest<Output> {};

TEST_F(OutputConfigurationFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetVideoMode(morquilAPIVideoMode1080p5994), "Video mode: 1080p59.94\n");
    ExpectSent(feature.SetPixelFormat(morquilAPIPixelFormat444YCbCr), "Video pixel format: YCbCr444\n");
    ExpectSent(feature.SetAspectRatio(morquilAPIAspectRatio14x9), "Aspect ratio: 14x9\n");
    ExpectSent(feature.SetDualLinkEnabled(morquilAPIDemuxQuadLink), "Video demux mode: QuadLink\n");
    ExpectSent(feature.SetSDIMode(morquilAPISDIModeLevelB), "Output sdi mode: LevelB\n");
    ExpectSent(feature.SetQuadSDIOutput(morquilAPIQuadSDIOutputHDSplit), "Quad sdi output: QuadHDSplit\n");
    ExpectSent(feature.SetQuadAncillaryReplication(5), "Quad ancillary replication: true\n");
    ExpectSent(feature.SetAnalogOutputMode(morquilAPIVideoSourceSVideo), "Analog output: SVideo\n");
    ExpectSent(feature.SetOutputOption(morquilAPIOutputOptionFreeze), "Output option: Freeze\n");
    ExpectSent(feature.SetTransitionSetting(12), "Transition setting: 12\n");
    ExpectSent(feature.SetStillFrameAction(morquilAPIStillFrameCapture), "Still frame action: Capture\n");
    ExpectSent(feature.SetHDMIOutput(morquilAPIPixelFormat444RGB), "HDMI output: RGB444\n");
}

TEST_F(OutputConfigurationFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Output::SetVideoMode, 34);
    ExpectBounded(&Output::SetPixelFormat, 3);
    ExpectBounded(&Output::SetAspectRatio, 5);
    ExpectBounded(&Output::SetAnalogOutputMode, 7);
    ExpectBounded(&Output::SetOutputOption, 4);
    ExpectBounded(&Output::SetStillFrameAction, 3);
    ExpectBounded(&Output::SetHDMIOutput, 3);
}

TEST_F(OutputConfigurationFeature, SendsABlockWithoutALineForAnUnboundedValueWithoutAWord) {
    ExpectUnbounded(&Output::SetDualLinkEnabled, 3);
    ExpectUnbounded(&Output::SetSDIMode, 2);
    ExpectUnbounded(&Output::SetQuadSDIOutput, 2);
}

TEST_F(OutputConfigurationFeature, SendsABlockWithoutALineForTheTransitionThatMeansNone) {
    ExpectSent(feature.SetTransitionSetting(-1), "");
    ExpectSent(feature.SetTransitionSetting(-2), "Transition setting: -2\n");
}

TEST_F(OutputConfigurationFeature, AnswersFromTheReport) {
    ExpectGets(&Output::GetVideoMode, morquilAPIVideoModeNTSC, "Video mode: 525i59.94 NTSC\n");
    ExpectGets(&Output::GetPixelFormat, morquilAPIPixelFormat422, "Video pixel format: YCbCr422\n");
    ExpectGets(&Output::GetAspectRatio, morquilAPIAspectRatioSmart, "Aspect ratio: Smart\n");
    ExpectGets(&Output::GetStillFramePresent, 1, "Still frame present: true\n");
    ExpectGets(&Output::GetStillFrameLoadComplete, 1, "Still load complete: true\n");
    ExpectGets(&Output::GetStillFrameStoreComplete, 1, "Still store complete: true\n");
    ExpectGets(&Output::GetStillFramePreviewComplete, 0, "Still preview complete: false\n");
    ExpectGets(&Output::GetDualLinkEnabled, morquilAPIDemuxQuadLink, "Video demux mode: QuadLink\n");
    ExpectGets(&Output::GetSDIMode, morquilAPISDIModeLevelB, "Output sdi mode: LevelB\n");
    ExpectGets(&Output::GetQuadSDIOutput, morquilAPIQuadSDIOutputLink, "Quad sdi output: QuadLink\n");
    ExpectGets(&Output::GetQuadAncillaryReplication, 1, "Quad ancillary replication: true\n");
    ExpectGets(&Output::GetAnalogOutputMode, morquilAPIVideoSourceComponent, "Analog output: Component\n");
    ExpectGets(&Output::GetOutputOption, morquilAPIOutputOptionStill, "Output option: Still\n");
    ExpectGets(&Output::GetTransitionSetting, 0, "Transition setting: 0\n");
    ExpectGets(&Output::GetHDMIOutput, morquilAPIPixelFormat444YCbCr, "HDMI output: YCbCr444\n");
    ExpectGetsRange(&Output::GetTransitionSettingRange, -1, 20, "Transition setting range: -1 20\n");
}

TEST_F(OutputConfigurationFeature, AnswersWhatIsAvailable) {
    ExpectOffers(&Output::IsDemuxModeAvailable, 3, {0, 2}, "Video demux modes: SingleLink QuadLink\n");
    ExpectOffers(&Output::IsPixelFormatAvailable, 3, {1}, "Video pixel formats: YCbCr444\n");
    ExpectOffers(&Output::IsSDIModeAvailable, 2, {1}, "Output sdi modes: LevelB\n");
    ExpectOffers(&Output::IsQuadSDIOutputAvailable, 2, {0}, "Quad sdi outputs: QuadLink\n");
    ExpectOffers(&Output::IsAnalogOutputModeAvailable, 7, {2, 3}, "Video sources: Component Composite\n");
    ExpectOffers(&Output::IsOutputOptionAvailable, 4, {3}, "Available output option: Freeze\n");
    ExpectOffers(&Output::IsHDMIOutputAvailable, 3, {2}, "HDMI outputs: RGB444\n");
}

TEST_F(OutputConfigurationFeature, CountsEveryAspectRatioAsAvailable) {
    for (const int ratio : {-1, 0, 4, 5, 99}) {
        LONG isAvailable = 0;
        EXPECT_EQ(feature.IsAspectRatioAvailable(static_cast<_MorquilAPIAspectRatio>(ratio), &isAvailable), S_OK);
        EXPECT_EQ(isAvailable, 1) << ratio;
    }
    EXPECT_EQ(feature.IsAspectRatioAvailable(morquilAPIAspectRatioSmart, nullptr), E_POINTER);
}

TEST_F(OutputConfigurationFeature, NeedsAlmostEveryValueAndListToBeComplete) {
    ExpectToNeedEveryLineBut(
        "Quad ancillary replication: true\nStill frame action: Preview\nVideo sources: Component\n");
}

}  // namespace
}  // namespace Morquil::Testing
