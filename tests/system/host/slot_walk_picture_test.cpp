// The picture controls and the input and output, slot by slot.
#include "tests/system/host/slot_walk.h"

namespace Morquil::Testing {
namespace {

// clang-format off

TEST_F(SlotWalk, InputConfiguration) {
    Walk({Iid::inputConfiguration, "VIDEO INPUT", "inco", true});
    GetsFlag(  4, "GetAutoDetectionEnabled",   "Auto detection enabled");
    SendsFlag( 3, "SetAutoDetectionEnabled",   "Auto detection enabled");
    GetsFlag(  6, "GetAutoDetectionPreferPsf", "Auto detection prefer PsF");
    SendsFlag( 5, "SetAutoDetectionPreferPsf", "Auto detection prefer PsF");
    GetsFlag(  8, "GetHdmi3DFull",             "HDMI 3D Full");
    SendsFlag( 7, "SetHdmi3DFull",             "HDMI 3D Full");
    SendsWord( 9, "SetVideoSource",            "Video source: SDI2\n", 7);
    Gets(     10, "GetVideoSource",            "Video source: Optical\n", 5);
    Offers(   11, "IsVideoSourceAvailable",    "Video sources: SDI2 HDMI\n", 7, {1, 6});
    SendsWord(12, "SetAudioSource",            "Audio source: DB25\n", 4);
    Gets(     13, "GetAudioSource",            "Audio source: RCA\n", 2);
    Offers(   14, "IsAudioSourceAvailable",    "Audio sources: AES Embedded\n", 4, {0, 1});
    GetsFlag( 15, "GetSignalPresent",          "Signal present");
    Gets(     16, "GetTimecodePresent",        "Timecode present: Detected\n", 1);
    Gets(     17, "GetClosedCaptionPresent",   "Closed captioning present: None\n", 0);
    GetsFlag( 18, "GetOpticalModulePresent",   "Optical module present");
    GetsFlag( 20, "GetWideSDAspectEnabled",    "Wide SD aspect");
    SendsFlag(19, "SetWideSDAspectEnabled",    "Wide SD aspect");
    SendsWord(21, "SetVideoMode",              "Video mode: 2160p50\n", 34);
    Gets(     22, "GetVideoMode",              "Video mode: 2160p59.94\n", 32);
    Gets(     23, "GetPixelFormat",            "Video pixel format: YCbCr444\n", 1);
    Gets(     24, "GetPCIeMode",               "PCIe mode: Playback\n", 2);
    ExpectEverySlotUpTo(24);
}

TEST_F(SlotWalk, OutputConfiguration) {
    Walk({Iid::outputConfiguration, "VIDEO OUTPUT", "ouco"});
    SendsWord(    3, "SetVideoMode",                "Video mode: 2160p50\n", 34);
    Gets(         4, "GetVideoMode",                "Video mode: 1080PsF23.98\n", 17);
    SendsWord(    5, "SetPixelFormat",              "Video pixel format: RGB444\n", 3);
    Gets(         6, "GetPixelFormat",              "Video pixel format: YCbCr444\n", 1);
    SendsWord(    7, "SetAspectRatio",              "Aspect ratio: Smart\n", 5);
    Gets(         8, "GetAspectRatio",              "Aspect ratio: CentreCut\n", 3);
    Offers(      10, "IsDemuxModeAvailable",        "Video demux modes: QuadLink\n", 3, {2});
    Offers(      11, "IsPixelFormatAvailable",      "Video pixel formats: RGB444 YCbCr422\n", 3, {0, 2});
    Offers(      12, "IsSDIModeAvailable",          "Output sdi modes: LevelB\n", 2, {1});
    Offers(      13, "IsQuadSDIOutputAvailable",    "Quad sdi outputs: QuadHDSplit\n", 2, {1});
    Offers(      14, "IsAnalogOutputModeAvailable", "Video sources: Component SVideo\n", 7, {2, 4});
    Offers(      15, "IsOutputOptionAvailable",     "Available output option: Still Input\n", 4, {0, 2});
    GetsFlag(    16, "GetStillFramePresent",        "Still frame present");
    GetsFlag(    17, "GetStillFrameLoadComplete",   "Still load complete");
    GetsFlag(    18, "GetStillFrameStoreComplete",  "Still store complete");
    GetsFlag(    19, "GetStillFramePreviewComplete", "Still preview complete");
    SendsAnyWord(20, "SetDualLinkEnabled",          "Video demux mode: QuadLink\n", 2, 3);
    Gets(        21, "GetDualLinkEnabled",          "Video demux mode: DualLink\n", 1);
    SendsAnyWord(22, "SetSDIMode",                  "Output sdi mode: LevelB\n", 1, 2);
    Gets(        23, "GetSDIMode",                  "Output sdi mode: LevelA\n", 0);
    SendsAnyWord(24, "SetQuadSDIOutput",            "Quad sdi output: QuadHDSplit\n", 1, 2);
    Gets(        25, "GetQuadSDIOutput",            "Quad sdi output: QuadLink\n", 0);
    GetsFlag(    27, "GetQuadAncillaryReplication", "Quad ancillary replication");
    SendsFlag(   26, "SetQuadAncillaryReplication", "Quad ancillary replication");
    SendsWord(   28, "SetAnalogOutputMode",         "Analog output: SDI2\n", 7);
    Gets(        29, "GetAnalogOutputMode",         "Analog output: Composite\n", 3);
    SendsWord(   30, "SetOutputOption",             "Output option: Freeze\n", 4);
    Gets(        31, "GetOutputOption",             "Output option: Still\n", 2);
    Sends(       32, "SetTransitionSetting",        "Transition setting: -2\n", -2);
    Sends(       32, "SetTransitionSetting",        "Transition setting: 100000\n", 100000);
    Sends(       32, "SetTransitionSetting",        "", -1);
    Gets(        33, "GetTransitionSetting",        "Transition setting: 7\n", 7);
    GetsRange(   34, "GetTransitionSettingRange",   "Transition setting range: -3 9\n", -3, 9);
    SendsWord(   35, "SetStillFrameAction",         "Still frame action: Preview\n", 3);
    SendsWord(   36, "SetHDMIOutput",               "HDMI output: RGB444\n", 3);
    Gets(        37, "GetHDMIOutput",               "HDMI output: YCbCr444\n", 1);
    Offers(      38, "IsHDMIOutputAvailable",       "HDMI outputs: YCbCr444\n", 3, {1});
    for (const int anyRatio : {-1, 0, 4, 5, 99}) {
        std::int32_t isAvailable = 0;
        EXPECT_EQ(Call(9, anyRatio, &isAvailable), ok);  // IsAspectRatioAvailable
        EXPECT_EQ(isAvailable, 1);
    }
    ExpectEverySlotUpTo(38);
}

TEST_F(SlotWalk, VideoProcAmp) {
    Walk({Iid::videoProcAmp, "VIDEO PROC AMP", "vpap"});
    Sends(     3, "SetGain",            "Gain: 100000\n", 100000);
    Gets(      4, "GetGain",            "Gain: -1\n", -1);
    GetsRange( 5, "GetGainRange",       "Gain range: -11 12\n", -11, 12);
    Sends(     6, "SetBlackLevel",      "Black: -2\n", -2);
    Gets(      7, "GetBlackLevel",      "Black: 2\n", 2);
    GetsRange( 8, "GetBlackLevelRange", "Black range: -21 22\n", -21, 22);
    Sends(     9, "SetSaturation",      "Saturation: 0\n", 0);
    Gets(     10, "GetSaturation",      "Saturation: 3\n", 3);
    GetsRange(11, "GetSaturationRange", "Saturation range: -31 32\n", -31, 32);
    Sends(    12, "SetHue",             "Hue: 2147483647\n", 2147483647);
    Gets(     13, "GetHue",             "Hue: 4\n", 4);
    GetsRange(14, "GetHueRange",        "Hue range: -41 42\n", -41, 42);
    Sends(    15, "SetRy",              "RY: -2147483648\n", INT_MIN);
    Gets(     16, "GetRy",              "RY: 5\n", 5);
    GetsRange(17, "GetRyRange",         "RY range: -51 52\n", -51, 52);
    Sends(    18, "SetBy",              "BY: 6\n", 6);
    Gets(     19, "GetBy",              "BY: -6\n", -6);
    GetsRange(20, "GetByRange",         "BY range: -61 62\n", -61, 62);
    Sends(    21, "SetSharpness",       "Sharp: 7\n", 7);
    Gets(     22, "GetSharpness",       "Sharp: -7\n", -7);
    GetsRange(23, "GetSharpnessRange",  "Sharp range: -71 72\n", -71, 72);
    Sends(    24, "ResetAll",           "Reset: true\n");
    Sends(    25, "ResetValues",        "ResetValues: -2147483648\n", 0x80000000U);
    ExpectEverySlotUpTo(25);
}

TEST_F(SlotWalk, ColorCorrection) {
    Walk({Iid::colorCorrection, "VIDEO ADJUST", "coco"});
    Sends(     3, "SetRed",        "Red: -1\n", -1);
    Gets(      4, "GetRed",        "Red: 1\n", 1);
    GetsRange( 5, "GetRedRange",   "Red range: -11 12\n", -11, 12);
    Sends(     6, "SetGreen",      "Green: -2\n", -2);
    Gets(      7, "GetGreen",      "Green: 2\n", 2);
    GetsRange( 8, "GetGreenRange", "Green range: -21 22\n", -21, 22);
    Sends(     9, "SetBlue",       "Blue: -3\n", -3);
    Gets(     10, "GetBlue",       "Blue: 3\n", 3);
    GetsRange(11, "GetBlueRange",  "Blue range: -31 32\n", -31, 32);
    Sends(    12, "ResetValues",   "ResetValues: 7\n", 7U);
    ExpectEverySlotUpTo(12);
}

TEST_F(SlotWalk, VideoClip) {
    Walk({Iid::videoClip, "VIDEO ADJUST", "vidc"});
    Sends(     3, "SetLumaLow",         "Luma low: -294967296\n", 0xEE6B2800U);
    Gets(      4, "GetLumaLow",         "Luma low: 4294967295\n", 4294967295U);
    GetsRange( 5, "GetLumaLowRange",    "Luma low range: 4 4294967295\n", 4U, 4294967295U);
    Sends(     6, "SetLumaHigh",        "Luma high: 940\n", 940U);
    Gets(      7, "GetLumaHigh",        "Luma high: 1019\n", 1019U);
    GetsRange( 8, "GetLumaHighRange",   "Luma high range: 21 22\n", 21U, 22U);
    Sends(     9, "SetChromaLow",       "Chroma low: 64\n", 64U);
    Gets(     10, "GetChromaLow",       "Chroma low: 3\n", 3U);
    GetsRange(11, "GetChromaLowRange",  "Chroma low range: 31 32\n", 31U, 32U);
    Sends(    12, "SetChromaHigh",      "Chroma high: 960\n", 960U);
    Gets(     13, "GetChromaHigh",      "Chroma high: 5\n", 5U);
    GetsRange(14, "GetChromaHighRange", "Chroma high range: 41 42\n", 41U, 42U);
    Sends(    15, "ResetValues",        "ResetValues: -1\n", 4294967295U);
    ExpectEverySlotUpTo(15);
}

TEST_F(SlotWalk, AspectFill) {
    Walk({Iid::aspectFill, "VIDEO ADJUST", "aspf"});
    Sends(     3, "SetLuma",      "Aspect fill luma: 64\n", 64U);
    Gets(      4, "GetLuma",      "Aspect fill luma: 1\n", 1U);
    GetsRange( 5, "GetLumaRange", "Aspect fill luma range: 11 12\n", 11U, 12U);
    Sends(     6, "SetCb",        "Aspect fill Cb: -1\n", 4294967295U);
    Gets(      7, "GetCb",        "Aspect fill Cb: 2\n", 2U);
    GetsRange( 8, "GetCbRange",   "Aspect fill Cb range: 21 22\n", 21U, 22U);
    Sends(     9, "SetCr",        "Aspect fill Cr: 512\n", 512U);
    Gets(     10, "GetCr",        "Aspect fill Cr: 3\n", 3U);
    GetsRange(11, "GetCrRange",   "Aspect fill Cr range: 31 32\n", 31U, 32U);
    Sends(    12, "ResetValues",  "ResetValues: 0\n", 0U);
    ExpectEverySlotUpTo(12);
}

TEST_F(SlotWalk, NoiseReduction) {
    Walk({Iid::noiseReduction, "NOISE REDUCTION", "nred", true});
    GetsFlag(   4, "GetEnabled",                "Enabled");
    SendsFlag(  3, "SetEnabled",                "Enabled");
    Sends(      5, "SetBias",                   "Bias: -5\n", -5);
    Gets(       6, "GetBias",                   "Bias: 5\n", 5);
    GetsRange(  7, "GetBiasRange",              "Bias range: -10 11\n", -10, 11);
    GetsFlag(   9, "GetSplitScreen",            "Split screen");
    SendsFlag(  8, "SetSplitScreen",            "Split screen");
    GetsFlag(  11, "GetRedOverlay",             "Red overlay");
    SendsFlag( 10, "SetRedOverlay",             "Red overlay");
    OffersFlag(12, "IsNoiseReductionAvailable", "Noise reduction available");
    ExpectEverySlotUpTo(12);
}

TEST_F(SlotWalk, TestPattern) {
    Walk({Iid::testPattern, "TEST PATTERN", "vtpa", true});
    SendsWord(  3, "SetOutput",              "Output: Multiburst\n", 6);
    Gets(       4, "GetOutput",              "Output: Grid\n", 4);
    SendsWord(  5, "SetNoSignal",            "No signal: Multiburst\n", 6);
    Gets(       6, "GetNoSignal",            "No signal: Black\n", 3);
    SendsWord(  7, "SetTone",                "Test tone: Tone6KHz\n", 5);
    Gets(       8, "GetTone",                "Test tone: Tone3KHz\n", 3);
    GetsFlag(  12, "GetMotion",              "Motion");
    SendsFlag(  9, "SetMotion",              "Motion");
    Sends(     10, "SetHorizMotion",         "Horizontal Rate: -8\n", -8);
    Sends(     11, "SetVertMotion",          "Vertical Rate: 8\n", 8);
    Gets(      13, "GetHorizMotion",         "Horizontal Rate: 1\n", 1);
    Gets(      14, "GetVertMotion",          "Vertical Rate: -1\n", -1);
    GetsRange( 15, "GetMotionRange",         "Motion range: -8 9\n", -8, 9);
    Offers(    16, "IsTestPatternAvailable", "Available test patterns: Bars None\n", 6, {0, 2});
    Offers(    17, "IsTestToneAvailable",    "Available test tones: Tone3KHz\n", 5, {3});
    OffersFlag(18, "IsMotionAvailable",      "Motion");
    ExpectEverySlotUpTo(18);
}

TEST_F(SlotWalk, VideoAdvanced) {
    Walk({Iid::videoAdvanced, "VIDEO ADVANCED", "viad", true});
    GetsFlag(   4, "GetCleanCadence",        "Clean cadence");
    SendsFlag(  3, "SetCleanCadence",        "Clean cadence");
    GetsFlag(   6, "GetScenecutDetect",      "Scenecut detect");
    SendsFlag(  5, "SetScenecutDetect",      "Scenecut detect");
    GetsFlag(   8, "GetAntiAlias",           "AntiAlias");
    SendsFlag(  7, "SetAntiAlias",           "AntiAlias");
    GetsFlag(  10, "GetRP177",               "RP177");
    SendsFlag(  9, "SetRP177",               "RP177");
    SendsWord( 11, "SetSourceType",          "Source type: Film\n", 3);
    Gets(      12, "GetSourceType",          "Source type: Video\n", 1);
    SendsWord( 13, "SetFrcAperture",         "FRC aperture: 3\n", 4);
    Gets(      14, "GetFrcAperture",         "FRC aperture: 0\n", 0);
    SendsWord( 15, "SetProcMode",            "Processing: Lowest Latency\n", 2);
    Gets(      16, "GetProcMode",            "Processing: Highest Quality\n", 0);
    GetsRange( 17, "GetFrcApertureRange",    "FRC aperture range: 1 3\n", 1, 3);
    Offers(    18, "IsSourceTypeAvailable",  "Available source types: Film Auto\n", 3, {0, 2});
    OffersFlag(19, "IsFrcApertureAvailable", "FRC aperture available");
    SCOPED_TRACE("IsProcModeAvailable");  // its words contain spaces and cannot be members of a list
    for (const int mode : {-1, 0, 1}) {
        std::int32_t isAvailable = 2;
        EXPECT_EQ(Call(20, mode, &isAvailable), ok);
        EXPECT_EQ(isAvailable, 0);
    }
    std::int32_t untouched = 2;
    EXPECT_EQ(Call(20, 2, &untouched), invalidArgument);
    EXPECT_EQ(untouched, 2);
    ExpectEverySlotUpTo(20);
}

// clang-format on

TEST_F(SlotWalk, VideoProcAmpKnowsNothingAfterTheDeviceHasReset) {
    Walk({Iid::videoProcAmp, "VIDEO PROC AMP", "vpap"});
    Gets(4, "GetGain", "Gain: 3\n", 3);

    EXPECT_EQ(watched->Report(Block("Reset: true\n")), "vpap");

    std::int32_t gain = 9;
    EXPECT_EQ(Call(4, &gain), failed);
    EXPECT_EQ(gain, 9);
    Gets(4, "GetGain", "Gain: 3\n", 3);
}

TEST_F(SlotWalk, VideoAdjustNotifiesEachOfItsThreeFeaturesSeparately) {
    Walk({Iid::aspectFill, "VIDEO ADJUST", "aspf"});

    EXPECT_EQ(watched->Report(Block("Red: 1\nLuma low: 2\nAspect fill Cr: 3\n")), "coco vidc aspf");
    EXPECT_EQ(watched->Report(Block("Red: 2\nLuma low: 2\nAspect fill Cr: 3\n")), "coco");
    EXPECT_EQ(watched->Report(Block("Red: 2\nChroma high: 2\n")), "vidc");
    EXPECT_EQ(watched->Report(Block("ResetValues: 5\n")), "");
}

}  // namespace
}  // namespace Morquil::Testing
