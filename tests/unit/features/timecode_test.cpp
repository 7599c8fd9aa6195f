#include "features/timecode.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Timecode = CMorquilTimecode;
class TimecodeFeature : public FeatureTest<Timecode> {};

TEST_F(TimecodeFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetMode(morquilAPITimecodeModeJamSync), "Timecode mode: JamSync\n");
    ExpectSent(feature.SetInputLine(14), "Timecode input line: 14\n");
    ExpectSent(feature.SetOutputLine(4294967295U), "Timecode output line: 4294967295\n");
    ExpectSent(feature.SetDropFrameMode(morquilAPITimecodeDropFrameModeNDF), "Timecode drop frame mode: NDF\n");
    ExpectSent(feature.SetLossMode(morquilAPITimecodeLossModeStop), "Timecode loss mode: Stop\n");
    ExpectSent(feature.SetSource(morquilAPITimecodeSourceLTC), "Timecode source: LTC\n");
    ExpectSent(feature.SetGenerateValue(0x01020304), "Timecode generate value: 01:02:03;04\n");
    ExpectSent(feature.SetJamSyncValue(0x23595929), "Timecode jam sync value: 23:59:59;29\n");
    ExpectSent(feature.SetStartSource(morquilAPITimecodeStartSourceFromInput), "Timecode start source: Input\n");
    ExpectSent(feature.StartTimecode(), "Timecode start: true\n");
}

TEST_F(TimecodeFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Timecode::SetMode, 5);
    ExpectBounded(&Timecode::SetDropFrameMode, 3);
    ExpectBounded(&Timecode::SetLossMode, 2);
    ExpectBounded(&Timecode::SetSource, 2);
    ExpectBounded(&Timecode::SetStartSource, 2);
}

TEST_F(TimecodeFeature, AnswersFromTheReport) {
    ExpectGets(&Timecode::GetMode, morquilAPITimecodeModeOff, "Timecode mode: Off\n");
    ExpectGets(&Timecode::GetInputLine, 14, "Timecode input line: 14\n");
    ExpectGets(&Timecode::GetOutputLine, 15, "Timecode output line: 15\n");
    ExpectGets(&Timecode::GetDropFrameMode, morquilAPITimecodeDropFrameModeDF, "Timecode drop frame mode: DF\n");
    ExpectGets(&Timecode::GetLossMode, morquilAPITimecodeLossModeContinue, "Timecode loss mode: Continue\n");
    ExpectGets(&Timecode::GetSource, morquilAPITimecodeSourceVITC, "Timecode source: VITC\n");
    ExpectGets(&Timecode::GetGenerateValue, 0x01020304, "Timecode generate value: 01:02:03;04\n");
    ExpectGets(&Timecode::GetJamSyncValue, 0x23595929, "Timecode jam sync value: 23:59:59;29\n");
    ExpectGets(&Timecode::GetStartSource, morquilAPITimecodeStartSourceFromUser, "Timecode start source: User\n");
    ExpectOffers(&Timecode::IsModeAvailable, 5, {1, 3}, "Timecode modes: Input Generate\n");
}

TEST_F(TimecodeFeature, AnswersTheLineRangeOfAFrameHeight) {
    struct {
        unsigned height, min, max;
    } const heights[] = {{486, 1, 11}, {576, 2, 12}, {720, 3, 13}, {1080, 4, 14}, {2160, 5, 15}};
    for (const auto& row : heights) {
        unsigned min = 77;
        unsigned max = 78;
        EXPECT_EQ(feature.GetLineRange(row.height, &min, &max), E_FAIL) << row.height;
        EXPECT_EQ(min, 77U);
        EXPECT_EQ(max, 78U);
        ReportAvailability("Timecode frame height: " + std::to_string(row.height) +
                           "\nTimecode line range: " + std::to_string(row.min) + " " + std::to_string(row.max) + "\n");
    }
    for (const auto& row : heights) {
        unsigned min = 0;
        unsigned max = 0;
        EXPECT_EQ(feature.GetLineRange(row.height, &min, &max), S_OK) << row.height;
        EXPECT_EQ(min, row.min);
        EXPECT_EQ(max, row.max);
    }
}

TEST_F(TimecodeFeature, FailsForAnInvalidFrameHeight) {
    ReportAvailability("Timecode frame height: 1080\nTimecode line range: 1 2\n");
    unsigned min = 0;
    unsigned max = 0;
    for (const unsigned height : {0U, 480U, 487U, 1088U, 4294967295U}) {
        EXPECT_EQ(feature.GetLineRange(height, &min, &max), E_FAIL) << height;
    }
}

TEST_F(TimecodeFeature, ChecksPointersBeforeTheFrameHeight) {
    unsigned limit = 0;
    EXPECT_EQ(feature.GetLineRange(480, nullptr, &limit), E_POINTER);
    EXPECT_EQ(feature.GetLineRange(1080, &limit, nullptr), E_POINTER);
}

TEST_F(TimecodeFeature, AnswersTheDropFrameModesOfAnOutputMode) {
    for (const bool reported : {false, true}) {
        for (int outputMode = -1; outputMode < 34; ++outputMode) {
            for (int mode = -1; mode < 3; ++mode) {
                LONG isAvailable = 2;
                EXPECT_EQ(
                    feature.IsDropFrameModeAvailable(static_cast<_MorquilAPIVideoMode>(outputMode),
                                                     static_cast<_MorquilAPITimecodeDropFrameMode>(mode), &isAvailable),
                    S_OK);
                const bool offered = outputMode == morquilAPIVideoMode1080i5994 && (mode == 0 || mode == 1);
                EXPECT_EQ(isAvailable, reported && offered ? 1 : 0) << outputMode << " " << mode;
            }
        }
        ReportAvailability("Output: 1080i59.94\nTimecode drop frame modes: Auto DF\n");
    }
}

TEST_F(TimecodeFeature, RefusesADropFrameQueryBeyondEitherTable) {
    const auto outputMode = morquilAPIVideoModePAL;
    const auto mode = morquilAPITimecodeDropFrameModeAuto;
    const auto noOutputMode = static_cast<_MorquilAPIVideoMode>(34);
    const auto noMode = static_cast<_MorquilAPITimecodeDropFrameMode>(3);
    LONG isAvailable = 2;
    EXPECT_EQ(feature.IsDropFrameModeAvailable(noOutputMode, mode, &isAvailable), E_INVALIDARG);
    EXPECT_EQ(feature.IsDropFrameModeAvailable(outputMode, noMode, &isAvailable), E_INVALIDARG);
    EXPECT_EQ(feature.IsDropFrameModeAvailable(noOutputMode, mode, nullptr), E_INVALIDARG);
    EXPECT_EQ(feature.IsDropFrameModeAvailable(outputMode, mode, nullptr), E_POINTER);
    EXPECT_EQ(isAvailable, 2);
}

TEST_F(TimecodeFeature, NotifiesOfItsOwnValuesOnly) {
    for (const char* const own :
         {"Timecode mode: Input\n", "Timecode input line: 1\n", "Timecode output line: 1\n",
          "Timecode drop frame mode: DF\n", "Timecode source: LTC\n", "Timecode loss mode: Stop\n",
          "Timecode generate value: 00:00:00;01\n", "Timecode jam sync value: 00:00:00;01\n",
          "Timecode start source: Input\n", "Timecode start: true\n"}) {
        EXPECT_TRUE(IsNotifiedOf(own)) << own;
    }
    EXPECT_FALSE(IsNotifiedOf(
        "Index reaction: On\nAFD insert type: Auto\nAFD output line: 1\nCC enabled: true\nCC input line: 1\n"
        "CC output line: 1\nCC service2 source: CC2\nCC service1 language: French\nCC service2 language: French\n"
        "Ancillary Data last input height: 1080\nResetValues: 1\n"));
}

TEST_F(TimecodeFeature, NotifiesOfItsOwnAvailabilityOnly) {
    for (const char* const own :
         {"Timecode modes: Off\n", "Output: 720p50\nTimecode drop frame modes: DF\n", "Timecode sources: LTC\n",
          "Timecode loss modes: Stop\n", "Timecode start sources: User\n",
          "Timecode frame height: 720\nTimecode line range: 1 2\n"}) {
        EXPECT_TRUE(IsNotifiedOfAvailability(own)) << own;
    }
    EXPECT_FALSE(IsNotifiedOfAvailability(
        "Index reactions: On\nAFD insert types: Auto\nAFD output frame height: 720\nAFD output line range: 1 2\n"
        "CC input line range: 1 2\nCC output line range: 1 2\nCC service2 sources: CC2\nCC service languages: "
        "French\n"));
}

}  // namespace
}  // namespace Morquil::Testing
