#include "features/input_configuration.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Input = CMorquilInputConfiguration;
class InputConfigurationFeature : public FeatureTest<Input> {};

TEST_F(InputConfigurationFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetAutoDetectionEnabled(1), "Auto detection enabled: true\n");
    ExpectSent(feature.SetAutoDetectionPreferPsf(0), "Auto detection prefer PsF: false\n");
    ExpectSent(feature.SetHdmi3DFull(2), "HDMI 3D Full: true\n");
    ExpectSent(feature.SetVideoSource(morquilAPIVideoSourceFiberOpt), "Video source: Optical\n");
    ExpectSent(feature.SetAudioSource(morquilAPIAudioSourceDB25), "Audio source: DB25\n");
    ExpectSent(feature.SetWideSDAspectEnabled(-1), "Wide SD aspect: true\n");
    ExpectSent(feature.SetVideoMode(morquilAPIVideoModeUHDp50), "Video mode: 2160p50\n");
}

TEST_F(InputConfigurationFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Input::SetVideoSource, 7);
    ExpectBounded(&Input::SetAudioSource, 4);
    ExpectBounded(&Input::SetVideoMode, 34);
}

TEST_F(InputConfigurationFeature, AnswersFromTheReport) {
    ExpectGets(&Input::GetAutoDetectionEnabled, 1, "Auto detection enabled: true\n");
    ExpectGets(&Input::GetAutoDetectionPreferPsf, 0, "Auto detection prefer PsF: false\n");
    ExpectGets(&Input::GetHdmi3DFull, 1, "HDMI 3D Full: true\n");
    ExpectGets(&Input::GetVideoSource, morquilAPIVideoSourceSDI2, "Video source: SDI2\n");
    ExpectGets(&Input::GetAudioSource, morquilAPIAudioSourceRCA, "Audio source: RCA\n");
    ExpectGets(&Input::GetSignalPresent, 1, "Signal present: true\n");
    ExpectGets(&Input::GetTimecodePresent, morquilAPITimecodeDetected, "Timecode present: Detected\n");
    ExpectGets(&Input::GetClosedCaptionPresent, morquilAPIClosedCaptionNone, "Closed captioning present: None\n");
    ExpectGets(&Input::GetOpticalModulePresent, 1, "Optical module present: true\n");
    ExpectGets(&Input::GetWideSDAspectEnabled, 0, "Wide SD aspect: false\n");
    ExpectGets(&Input::GetVideoMode, morquilAPIVideoModePAL, "Video mode: 625i50 PAL\n");
    ExpectGets(&Input::GetPixelFormat, morquilAPIPixelFormat444RGB, "Video pixel format: RGB444\n");
    ExpectGets(&Input::GetPCIeMode, morquilAPIPCIePlayback, "PCIe mode: Playback\n");
}

TEST_F(InputConfigurationFeature, AnswersWhatIsAvailable) {
    ExpectOffers(&Input::IsVideoSourceAvailable, 7, {0, 6}, "Video sources: SDI1 SDI2\n");
    ExpectOffers(&Input::IsAudioSourceAvailable, 4, {1}, "Audio sources: AES\n");
}

TEST_F(InputConfigurationFeature, NotifiesOfEveryListThatChanges) {
    EXPECT_TRUE(IsNotifiedOfAvailability("Video sources: SDI1\n"));
    EXPECT_TRUE(IsNotifiedOfAvailability("Audio sources: AES\n"));
    EXPECT_TRUE(IsNotifiedOfAvailability("Video pixel formats: RGB444\n"));
    EXPECT_FALSE(IsNotifiedOfAvailability("Video sources: SDI1\nAudio sources: AES\nVideo pixel formats: RGB444\n"));
}

TEST_F(InputConfigurationFeature, IsSilentAboutAFirstListThatOffersNothing) {
    EXPECT_FALSE(IsNotifiedOfAvailability("Video sources: Unheard\n"));
}

TEST_F(InputConfigurationFeature, IsCompleteWithoutAModeOnlyWhenThereIsNoSignal) {
    const std::string rest =
        "Auto detection enabled: true\nAuto detection prefer PsF: false\nVideo source: SDI1\nAudio source: AES\n"
        "Timecode present: None\nClosed captioning present: None\nWide SD aspect: false\nHDMI 3D Full: false\n"
        "Optical module present: false\nPCIe mode: None\n";
    ReportAvailability("Video sources: SDI1\nAudio sources: AES\n");
    Report(rest);
    EXPECT_FALSE(feature.IsCacheComplete());
    Report("Signal present: false\n");
    EXPECT_TRUE(feature.IsCacheComplete());
    Report("Signal present: true\n");
    EXPECT_FALSE(feature.IsCacheComplete());
    Report("Video mode: 1080i50\n");
    EXPECT_FALSE(feature.IsCacheComplete());
    Report("Video pixel format: YCbCr422\n");
    EXPECT_TRUE(feature.IsCacheComplete());
}

TEST_F(InputConfigurationFeature, NeedsAlmostEveryValueAndListToBeComplete) {
    ExpectToNeedEveryLineBut("Video pixel formats: RGB444\n");
}

TEST_F(InputConfigurationFeature, NeedsBothSourceListsToBeComplete) {
    Report(theCase.settings);
    ReportAvailability("Video sources: SDI1\n");
    EXPECT_FALSE(feature.IsCacheComplete());
    ReportAvailability("Audio sources: AES\n");
    EXPECT_TRUE(feature.IsCacheComplete());
}

}  // namespace
}  // namespace Morquil::Testing
