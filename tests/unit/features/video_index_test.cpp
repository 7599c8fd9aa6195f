#include "features/video_index.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Index = CMorquilVideoIndex;
class VideoIndexFeature : public FeatureTest<Index> {};

TEST_F(VideoIndexFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetIndexReaction(morquilAPIVideoIndexReactionAFD), "Index reaction: On\n");
    ExpectSent(feature.SetAFDInsertType(morquilAPIAFDInsertTypeF), "AFD insert type: 1111\n");
    ExpectSent(feature.SetAFDOutputLine(12), "AFD output line: 12\n");
}

TEST_F(VideoIndexFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Index::SetIndexReaction, 2);
    ExpectBounded(&Index::SetAFDInsertType, 19);
}

TEST_F(VideoIndexFeature, AnswersFromTheReport) {
    ExpectGets(&Index::GetIndexReaction, morquilAPIVideoIndexReactionOff, "Index reaction: Off\n");
    ExpectGets(&Index::GetAFDInsertType, morquilAPIAFDInsertTypeA, "AFD insert type: 1010\n");
    ExpectGets(&Index::GetAFDOutputLine, 12, "AFD output line: 12\n");
    ExpectOffers(&Index::IsAFDInsertTypeAvailable, 19, {0, 3, 18}, "AFD insert types: Off 0000 1111\n");
}

TEST_F(VideoIndexFeature, AnswersTheLineRangeOfAFrameHeight) {
    unsigned min = 77;
    unsigned max = 78;
    EXPECT_EQ(feature.GetAFDOutputLineRange(2160, &min, &max), E_FAIL);
    EXPECT_EQ(min, 77U);
    // Timecode has its own ranges.
    ReportAvailability(
        "Timecode frame height: 2160\nTimecode line range: 1 2\nAFD output frame height: 2160\n"
        "AFD output line range: 3 4\n");
    EXPECT_EQ(feature.GetAFDOutputLineRange(2160, &min, &max), S_OK);
    EXPECT_EQ(min, 3U);
    EXPECT_EQ(max, 4U);
    EXPECT_EQ(feature.GetAFDOutputLineRange(1080, &min, &max), E_FAIL);
    EXPECT_EQ(feature.GetAFDOutputLineRange(2161, &min, &max), E_FAIL);
}

TEST_F(VideoIndexFeature, ChecksPointersBeforeTheFrameHeight) {
    unsigned limit = 0;
    EXPECT_EQ(feature.GetAFDOutputLineRange(1, nullptr, &limit), E_POINTER);
    EXPECT_EQ(feature.GetAFDOutputLineRange(1, &limit, nullptr), E_POINTER);
}

TEST_F(VideoIndexFeature, NotifiesOfItsOwnValuesOnly) {
    for (const char* const own : {"Index reaction: On\n", "AFD insert type: Auto\n", "AFD output line: 1\n"}) {
        EXPECT_TRUE(IsNotifiedOf(own)) << own;
    }
    EXPECT_FALSE(IsNotifiedOf(
        "Timecode mode: Input\nTimecode input line: 1\nTimecode output line: 1\nTimecode drop frame mode: DF\n"
        "Timecode source: LTC\nTimecode loss mode: Stop\nTimecode generate value: 00:00:00;01\n"
        "Timecode jam sync value: 00:00:00;01\nTimecode start source: Input\nTimecode start: true\n"
        "CC enabled: true\nCC input line: 1\nCC output line: 1\nCC service2 source: CC2\n"
        "CC service1 language: French\nCC service2 language: French\nAncillary Data last input height: 1080\n"
        "ResetValues: 1\n"));
}

TEST_F(VideoIndexFeature, NotifiesOfItsOwnAvailabilityOnly) {
    for (const char* const own : {"Index reactions: On\n", "AFD insert types: Auto\n",
                                  "AFD output frame height: 720\nAFD output line range: 1 2\n"}) {
        EXPECT_TRUE(IsNotifiedOfAvailability(own)) << own;
    }
    EXPECT_FALSE(IsNotifiedOfAvailability(
        "Timecode modes: Off\nOutput: 720p50\nTimecode drop frame modes: DF\nTimecode sources: LTC\n"
        "Timecode loss modes: Stop\nTimecode start sources: User\nTimecode frame height: 720\n"
        "Timecode line range: 1 2\nCC input line range: 1 2\nCC output line range: 1 2\nCC service2 sources: CC2\n"
        "CC service languages: French\n"));
}

}  // namespace
}  // namespace Morquil::Testing
