// Timecode, captions, video index, reference and audio, slot by slot.
#include "tests/system/host/slot_walk.h"

namespace Morquil::Testing {
namespace {

// clang-format off

TEST_F(SlotWalk, Timecode) {
    Walk({Iid::timecode, "ANCILLARY DATA", "time", true});
    SendsWord(   3, "SetMode",          "Timecode mode: JamSync\n", 5);
    Gets(        4, "GetMode",          "Timecode mode: Generate\n", 3);
    Offers(      5, "IsModeAvailable",  "Timecode modes: InputRegen Off\n", 5, {0, 2});
    Sends(       6, "SetInputLine",     "Timecode input line: 4294967295\n", 4294967295U);
    Gets(        7, "GetInputLine",     "Timecode input line: 14\n", 14U);
    Sends(       8, "SetOutputLine",    "Timecode output line: 0\n", 0U);
    Gets(        9, "GetOutputLine",    "Timecode output line: 15\n", 15U);
    GetsRangeOf(10, "GetLineRange",     "Timecode frame height: 486\nTimecode line range: 10 20\n", 10U, 20U, 486U);
    GetsRangeOf(10, "GetLineRange",     "Timecode frame height: 576\nTimecode line range: 11 21\n", 11U, 21U, 576U);
    GetsRangeOf(10, "GetLineRange",     "Timecode frame height: 720\nTimecode line range: 12 22\n", 12U, 22U, 720U);
    GetsRangeOf(10, "GetLineRange",     "Timecode frame height: 1080\nTimecode line range: 13 23\n", 13U, 23U, 1080U);
    GetsRangeOf(10, "GetLineRange",     "Timecode frame height: 2160\nTimecode line range: 14 24\n", 14U, 24U, 2160U);
    SendsWord(  11, "SetDropFrameMode", "Timecode drop frame mode: NDF\n", 3);
    Gets(       12, "GetDropFrameMode", "Timecode drop frame mode: DF\n", 1);
    SendsWord(  14, "SetLossMode",      "Timecode loss mode: Stop\n", 2);
    Gets(       15, "GetLossMode",      "Timecode loss mode: Continue\n", 0);
    SendsWord(  16, "SetSource",        "Timecode source: LTC\n", 2);
    Gets(       17, "GetSource",        "Timecode source: VITC\n", 0);
    Sends(      18, "SetGenerateValue", "Timecode generate value: 10:20:30;25\n", 0x10203025U);
    Gets(       19, "GetGenerateValue", "Timecode generate value: 01:02:03:04\n", 0x01020304U);
    Sends(      20, "SetJamSyncValue",  "Timecode jam sync value: 00:00:00;00\n", 0U);
    Gets(       21, "GetJamSyncValue",  "Timecode jam sync value: 23:59:59;29\n", 0x23595929U);
    SendsWord(  22, "SetStartSource",   "Timecode start source: Input\n", 2);
    Gets(       23, "GetStartSource",   "Timecode start source: User\n", 0);
    Sends(      24, "StartTimecode",    "Timecode start: true\n");
}

TEST_F(SlotWalk, ClosedCaption) {
    Walk({Iid::closedCaption, "ANCILLARY DATA", "clca", true});
    GetsFlag(  4, "GetEnabled",          "CC enabled");
    SendsFlag( 3, "SetEnabled",          "CC enabled");
    Sends(     5, "SetInputLine",        "CC input line: 9\n", 9U);
    Gets(      6, "GetInputLine",        "CC input line: 21\n", 21U);
    GetsRange( 7, "GetInputLineRange",   "CC input line range: 12 22\n", 12U, 22U);
    Sends(     8, "SetOutputLine",       "CC output line: 4294967295\n", 4294967295U);
    Gets(      9, "GetOutputLine",       "CC output line: 22\n", 22U);
    GetsRange(10, "GetOutputLineRange",  "CC output line range: 13 23\n", 13U, 23U);
    SendsWord(11, "SetService2Source",   "CC service2 source: CC3\n", 2);
    Gets(     12, "GetService2Source",   "CC service2 source: CC2\n", 0);
    SendsWord(13, "SetService1Language", "CC service1 language: Spanish\n", 5);
    Gets(     14, "GetService1Language", "CC service1 language: French\n", 1);
    SendsWord(15, "SetService2Language", "CC service2 language: Spanish\n", 5);
    Gets(     16, "GetService2Language", "CC service2 language: Italian\n", 3);
    Sends(    17, "ResetValues",         "ResetValues: -1\n", 4294967295U);
    ExpectEverySlotUpTo(17);
}

TEST_F(SlotWalk, VideoIndex) {
    Walk({Iid::videoIndex, "ANCILLARY DATA", "viin", true});
    SendsWord(   3, "SetIndexReaction",         "Index reaction: On\n", 2);
    Gets(        4, "GetIndexReaction",         "Index reaction: Off\n", 0);
    SendsWord(   5, "SetAFDInsertType",         "AFD insert type: 1111\n", 19);
    Gets(        6, "GetAFDInsertType",         "AFD insert type: 0000\n", 3);
    Offers(      7, "IsAFDInsertTypeAvailable", "AFD insert types: 1111 Auto 0000\n", 19, {1, 3, 18});
    Sends(       8, "SetAFDOutputLine",         "AFD output line: 11\n", 11U);
    Gets(        9, "GetAFDOutputLine",         "AFD output line: 12\n", 12U);
    GetsRangeOf(10, "GetAFDOutputLineRange",
                "AFD output frame height: 486\nAFD output line range: 1 2\n", 1U, 2U, 486U);
    GetsRangeOf(10, "GetAFDOutputLineRange",
                "AFD output frame height: 576\nAFD output line range: 3 4\n", 3U, 4U, 576U);
    GetsRangeOf(10, "GetAFDOutputLineRange",
                "AFD output frame height: 720\nAFD output line range: 5 6\n", 5U, 6U, 720U);
    GetsRangeOf(10, "GetAFDOutputLineRange",
                "AFD output frame height: 1080\nAFD output line range: 7 8\n", 7U, 8U, 1080U);
    GetsRangeOf(10, "GetAFDOutputLineRange",
                "AFD output frame height: 2160\nAFD output line range: 9 41\n", 9U, 41U, 2160U);
    ExpectEverySlotUpTo(10);
}

TEST_F(SlotWalk, Reference) {
    Walk({Iid::reference, "GENLOCK", "refe", true});
    SendsWord(   3, "SetType",             "Type: External\n", 3);
    Gets(        4, "GetType",             "Type: Internal\n", 1);
    Offers(      5, "IsGenRefAvailable",   "Gen references: TriLevel\n", 2, {1}, failed);
    SendsWord(   6, "SetGenRef",           "Gen reference: TriLevel\n", 2);
    Gets(        7, "GetGenRef",           "Gen reference: Blackburst\n", 0);
    Sends(       8, "SetLineOffset",       "Line offset: -5\n", -5);
    Gets(        9, "GetLineOffset",       "Line offset: 5\n", 5);
    GetsRangeOf(10, "GetLineOffsetRange",  "Video mode: 525i59.94 NTSC\nLine offset range: -1 1\n", -1, 1, 0);
    GetsRangeOf(10, "GetLineOffsetRange",  "Video mode: 2160p50\nLine offset range: -2 2\n", -2, 2, 33);
    Sends(      11, "SetPixelOffset",      "Pixel offset: 6\n", 6);
    Gets(       12, "GetPixelOffset",      "Pixel offset: -6\n", -6);
    GetsRangeOf(13, "GetPixelOffsetRange",
                "Video mode: 720p50\nLine offset range: -3 3\nPixel offset range: -4 4\n", -4, 4, 4);
    GetsFlag(   14, "GetSignalLocked",     "Signal locked");
    ExpectEverySlotUpTo(14);
}

TEST_F(SlotWalk, AudioMapping) {
    Walk({Iid::audioMapping, "AUDIO", "aump", true});
    Gets(        4, "GetAudioGain",              "AudioInLevel0: 3\n", 3);
    GetsRange(   5, "GetAudioGainRange",         "Audio level range: -60 12\n", -60, 12);
    Gets(        7, "GetAudioDelay",             "AudioUserDelay0: -40\n", -40);
    GetsRange(   8, "GetAudioDelayRange",        "Analog delay range: -100 1000\n", -100, 1000);
    GetsFlag(   10, "GetAESAnalogOutputSelect",  "AES output select");
    SendsFlag(   9, "SetAESAnalogOutputSelect",  "AES output select");
    Offers(     11, "IsAudioSelectionAvailable", "Audio selections: TTMute DolbyE1 AudioIn1\n", 31, {0, 24, 30});
    Sends(      12, "SetAudioMap",               "AudioOut0: TT3000\n", 0U, 28);
    Sends(      12, "SetAudioMap",               "AudioOut15: AudioIn16\n", 15U, 15);
    Sends(      12, "SetAudioMap",               "", 15U, 40);
    Sends(      12, "SetAudioMap",               "", 15U, -1);
    Refuses(    12, "SetAudioMap",               invalidArgument, 16U, 0);
    Refuses(    12, "SetAudioMap",               invalidArgument, -1, 0);
    Sends(      14, "SetAudioInMap",             "AudioInPair7: RCAPair\n", 7U, 14);
    Sends(      14, "SetAudioInMap",             "", 0U, 16);
    Refuses(    14, "SetAudioInMap",             invalidArgument, 8U, 0);
    Refuses(    14, "SetAudioInMap",             invalidArgument, -1, 0);
    SendsAnyWord(16, "SetAudioMeterChan",        "Audio meter channels: MeterChan15&16\n", 7, 8);
    Gets(       17, "GetAudioMeterChan",         "Audio meter channels: MeterChan3&4\n", 1);
    Sends(      18, "SetAnalogInRefLevel",       "Analog input ref level: -18\n", -18);
    Gets(       19, "GetAnalogInRefLevel",       "Analog input ref level: 18\n", 18);
    GetsRange(  20, "GetAnaInRefLevelRange",     "Analog input ref level range: 0 24\n", 0, 24);
    Sends(      21, "ResetValues",               "ResetValues: 3\n", 3U);
}

// clang-format on

TEST_F(SlotWalk, TimecodeOffersDropFrameModesForEachOutputMode) {
    Walk({Iid::timecode, "ANCILLARY DATA", "time", true});
    const auto offers = [&](int outputMode, int mode) {
        std::int32_t isAvailable = 2;
        EXPECT_EQ(Call(13, outputMode, mode, &isAvailable), ok) << outputMode << ' ' << mode;
        return isAvailable;
    };
    EXPECT_EQ(offers(7, 1), 0);

    ReportAvailability(
        "Output: 1080i50\nTimecode drop frame modes: NDF DF\nOutput: 2160p50\n"
        "Timecode drop frame modes: Auto\n");

    EXPECT_EQ(offers(7, 0), 0);
    EXPECT_EQ(offers(7, 1), 1);
    EXPECT_EQ(offers(7, 2), 1);
    EXPECT_EQ(offers(33, 0), 1);
    EXPECT_EQ(offers(0, 0), 0);
    for (const int negative : {-1, INT_MIN}) {
        EXPECT_EQ(offers(negative, 0), 0);
        EXPECT_EQ(offers(33, negative), 0);
    }
    std::int32_t untouched = 2;
    EXPECT_EQ(Call(13, 34, 0, &untouched), invalidArgument);
    EXPECT_EQ(Call(13, 0, 3, &untouched), invalidArgument);
    EXPECT_EQ(untouched, 2);
}

TEST_F(SlotWalk, LineRangesOfOtherHeightsAreFailuresAfterTheNullTest) {
    for (const auto& [iid, propertySet] : {std::pair{Iid::timecode, "time"}, std::pair{Iid::videoIndex, "viin"}}) {
        Walk({iid, "ANCILLARY DATA", propertySet});
        std::uint32_t min = 7;
        std::uint32_t max = 8;
        for (const std::uint32_t height : {0U, 480U, 1088U, 4294967295U}) {
            EXPECT_EQ(Call(10, height, &min, &max), failed) << height;
            EXPECT_EQ(Call(10, height, static_cast<std::uint32_t*>(nullptr), &max), nullPointer) << height;
        }
        EXPECT_EQ(min, 7U);
        EXPECT_EQ(max, 8U);
    }
}

TEST_F(SlotWalk, ReferenceRangesOfModesThatDoNotExistAreFailures) {
    Walk({Iid::reference, "GENLOCK", "refe"});
    for (const int slot : {10, 13}) {
        int min = 7;
        int max = 8;
        for (const int mode : {34, INT_MAX, -1, INT_MIN}) {
            EXPECT_EQ(Call(slot, mode, &min, &max), failed) << mode;
            EXPECT_EQ(Call(slot, mode, static_cast<int*>(nullptr), &max), nullPointer) << mode;
        }
        EXPECT_EQ(min, 7);
        EXPECT_EQ(max, 8);
    }
}

TEST_F(SlotWalk, PixelOffsetRangesAreKnownWhenTheLineOffsetRangesAre) {
    Walk({Iid::reference, "GENLOCK", "refe", true});
    int min = 7;
    int max = 8;

    ReportAvailability("Video mode: 720p50\nPixel offset range: -4 4\nVideo mode: 720p60\nLine offset range: -1 1\n");

    EXPECT_EQ(Call(13, 4, &min, &max), failed);
    EXPECT_EQ(min, 7);
    EXPECT_EQ(Call(13, 5, &min, &max), ok);
    EXPECT_EQ(min, 0);
    EXPECT_EQ(max, 0);
}

TEST_F(SlotWalk, AncillaryDataNotifiesEachOfItsThreeFeaturesSeparately) {
    Walk({Iid::timecode, "ANCILLARY DATA", "time"});

    EXPECT_EQ(watched->Report(Block("Timecode mode: Off\nCC enabled: true\nAFD output line: 1\n")), "time clca viin");
    EXPECT_EQ(watched->Report(Block("Timecode mode: Off\nCC enabled: false\nAFD output line: 1\n")), "clca");
    EXPECT_EQ(watched->Report(Block("Timecode start: true\n")), "time");
    EXPECT_EQ(watched->Report(Block("Index reaction: On\n")), "viin");
    EXPECT_EQ(watched->Report(Block("Ancillary Data last input height: 1080\nResetValues: 3\n")), "");
}

TEST_F(SlotWalk, AudioSetsAllLevelsAndDelaysAtOnce) {
    Walk({Iid::audioMapping, "AUDIO", "aump"});
    const auto lines = [](const char* key, int count, const char* value) {
        std::string all;
        for (int index = 0; index < count; ++index) {
            all += key + std::to_string(index) + ": " + value + "\n";
        }
        return all;
    };

    Sends(3, "SetAudioGain", lines("AudioInLevel", 16, "-6"), -6);
    Sends(6, "SetAudioDelay", lines("AudioUserDelay", 8, "40"), 40);
}

TEST_F(SlotWalk, AudioLevelAndDelayAreThoseOfTheFirstChannel) {
    Walk({Iid::audioMapping, "AUDIO", "aump"});
    int value = 9;
    EXPECT_EQ(watched->Report(Block("AudioInLevel1: 5\nAudioUserDelay1: 6\n")), "aump");
    EXPECT_EQ(Call(4, &value), failed);
    EXPECT_EQ(Call(7, &value), failed);
    EXPECT_EQ(value, 9);

    EXPECT_EQ(watched->Report(Block("AudioInLevel0: 3\nAudioUserDelay0: 4\n")), "aump");
    EXPECT_EQ(Call(4, &value), ok);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(Call(7, &value), ok);
    EXPECT_EQ(value, 4);
}

TEST_F(SlotWalk, AudioMapsTestTheOutPointerBeforeTheIndex) {
    Walk({Iid::audioMapping, "AUDIO", "aump"});
    struct Map {
        int slot;
        std::uint32_t count;
        const char* line;
        int value;
    };
    for (const Map& map : {Map{13, 16, "AudioOut15: TTMute\n", 30}, Map{15, 8, "AudioInPair7: MutePair\n", 15}}) {
        SCOPED_TRACE(map.line);
        int value = 99;
        EXPECT_EQ(Call(map.slot, map.count, static_cast<int*>(nullptr)), nullPointer);
        EXPECT_EQ(Call(map.slot, map.count, &value), invalidArgument);
        EXPECT_EQ(Call(map.slot, 4294967295U, &value), invalidArgument);
        EXPECT_EQ(Call(map.slot, map.count - 1, &value), failed);
        EXPECT_EQ(value, 99);
        ExpectNotified(map.line);
        EXPECT_EQ(Call(map.slot, map.count - 1, &value), ok);
        EXPECT_EQ(value, map.value);
        EXPECT_EQ(Call(map.slot, 0U, &value), failed);
    }
}

}  // namespace
}  // namespace Morquil::Testing
