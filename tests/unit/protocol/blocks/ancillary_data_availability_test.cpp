#include <gtest/gtest.h>

#include <string>

#include "protocol/blocks/ancillary_data.h"
#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using AncillaryDataAvailable = AncillaryDataAvailabilityChangeSet;
using LineRange = Range<std::uint32_t>;

// clang-format off
const GoldenBlock<AncillaryDataAvailable> ancillaryDataAvailable{"ANCILLARY DATA AVAILABILITY", {
    {"Timecode modes: Off Input JamSync",              &AncillaryDataAvailable::timecodeModes,                 Members(0, 1, 4)},
    {"Output: 525i59.94 NTSC\n"
     "Timecode drop frame modes: Auto DF NDF",         At(&AncillaryDataAvailable::timecodeDropFrameModes, 0), Members(0, 1, 2)},
    {"Output: 2160p50\n"
     "Timecode drop frame modes: NDF",                 At(&AncillaryDataAvailable::timecodeDropFrameModes, 33), Members(2)},
    {"Timecode sources: VITC LTC",                     &AncillaryDataAvailable::timecodeSources,               Members(0, 1)},
    {"Timecode loss modes: Continue Stop",             &AncillaryDataAvailable::timecodeLossModes,             Members(0, 1)},
    {"Timecode start sources: User Input",             &AncillaryDataAvailable::timecodeStartSources,          Members(0, 1)},
    {"Timecode frame height: 486\n"
     "Timecode line range: 10 20",                     At(&AncillaryDataAvailable::timecodeLineRange, 0),      LineRange{10, 20}},
    {"Timecode frame height: 576\n"
     "Timecode line range: 11 21",                     At(&AncillaryDataAvailable::timecodeLineRange, 1),      LineRange{11, 21}},
    {"Timecode frame height: 720\n"
     "Timecode line range: 12 22",                     At(&AncillaryDataAvailable::timecodeLineRange, 2),      LineRange{12, 22}},
    {"Timecode frame height: 1080\n"
     "Timecode line range: 13 23",                     At(&AncillaryDataAvailable::timecodeLineRange, 3),      LineRange{13, 23}},
    {"Timecode frame height: 2160\n"
     "Timecode line range: 14 4294967295",             At(&AncillaryDataAvailable::timecodeLineRange, 4),      LineRange{14, ~0U}},
    {"Index reactions: Off On",                        &AncillaryDataAvailable::indexReactions,                Members(0, 1)},
    {"AFD insert types: Off Auto 0000 1111",           &AncillaryDataAvailable::afdInsertTypes,                Members(0, 1, 3, 18)},
    {"AFD output frame height: 486\n"
     "AFD output line range: 1 2",                     At(&AncillaryDataAvailable::afdOutputLineRange, 0),     LineRange{1, 2}},
    {"AFD output frame height: 576\n"
     "AFD output line range: 3 4",                     At(&AncillaryDataAvailable::afdOutputLineRange, 1),     LineRange{3, 4}},
    {"AFD output frame height: 720\n"
     "AFD output line range: 5 6",                     At(&AncillaryDataAvailable::afdOutputLineRange, 2),     LineRange{5, 6}},
    {"AFD output frame height: 1080\n"
     "AFD output line range: 7 8",                     At(&AncillaryDataAvailable::afdOutputLineRange, 3),     LineRange{7, 8}},
    {"AFD output frame height: 2160\n"
     "AFD output line range: 9 10",                    At(&AncillaryDataAvailable::afdOutputLineRange, 4),     LineRange{9, 10}},
    {"CC input line range: 8 16",                      &AncillaryDataAvailable::ccInputLineRange,              LineRange{8, 16}},
    {"CC output line range: 9 17",                     &AncillaryDataAvailable::ccOutputLineRange,             LineRange{9, 17}},
    {"CC service2 sources: CC2 CC3",                   &AncillaryDataAvailable::ccService2Sources,             Members(0, 1)},
    {"CC service languages: English Spanish",          &AncillaryDataAvailable::ccServiceLanguages,            Members(0, 4)}}};
// clang-format on

const std::string ancillaryHeader = "ANCILLARY DATA AVAILABILITY";

AncillaryDataAvailable Received(const std::string& lines) {
    const auto recorded = FedWith(ancillaryHeader, lines);
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events()) << lines;
    return recorded->sink.Last<AncillaryDataAvailable>();
}

TEST(AncillaryDataAvailabilityBlock, ReadsAndWritesEveryLine) {
    ancillaryDataAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(AncillaryDataAvailabilityBlock, WritesItsLinesInOrder) {
    ancillaryDataAvailable.ExpectWritesItsLinesInOrder();
}

TEST(AncillaryDataAvailabilityBlock, ReportsBadValuesAndUnknownKeys) {
    ancillaryDataAvailable.ExpectReports({
        // clang-format off
        {"Output: 8k", "Received invalid Timecode DropFrame Avail output mode string \"8k\"\n"},
        NotAValue("Timecode frame height", "tall"),
        NotARange("Timecode line range", "10"),
        NotAValue("AFD output frame height", "tall"),
        NotARange("AFD output line range", "x y"),
        NotARange("CC input line range", "x"),
        NotARange("CC output line range", "1"),
        {"Timecode mode: Off", "Unknown ancillary data availability line \"Timecode mode\"\n"},
        // clang-format on
    });
}

TEST(AncillaryDataAvailabilityBlock, IgnoresDropFrameModesBeforeAnyOutputSilently) {
    EXPECT_TRUE(IsEmpty(Received("Timecode drop frame modes: DF")));
}

TEST(AncillaryDataAvailabilityBlock, SelectsNothingWithAnUnknownOutput) {
    const auto recorded = FedWith(ancillaryHeader, "Output: 720p50\nOutput: 8k\nTimecode drop frame modes: DF");
    EXPECT_EQ(recorded->sink.Errors().size(), 1U);
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<AncillaryDataAvailable>()));
}

TEST(AncillaryDataAvailabilityBlock, ForgetsItsOutputAtTheEndOfABlock) {
    const auto recorded = FedWith(ancillaryHeader, "Output: 720p50");
    recorded->Feed(ancillaryHeader + ":\nTimecode drop frame modes: DF\n\n");
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<AncillaryDataAvailable>()));
}

TEST(AncillaryDataAvailabilityBlock, WritesNothingForAnOutputWithoutDropFrameModes) {
    EXPECT_EQ(BlockText<AncillaryDataAvailable>(Received("Output: 720p50\nTimecode drop frame modes: Never")),
              ancillaryHeader + ":\n\n");
}

TEST(AncillaryDataAvailabilityBlock, DropsTheRangeOfAHeightThatItDoesNotKnow) {
    EXPECT_TRUE(IsEmpty(Received("Timecode frame height: 1000\nTimecode line range: 1 2")));
    EXPECT_TRUE(IsEmpty(Received("AFD output frame height: 1000\nAFD output line range: 1 2")));
}

TEST(AncillaryDataAvailabilityBlock, DropsTheRangeBeforeAnyHeight) {
    EXPECT_TRUE(IsEmpty(Received("Timecode line range: 1 2\nAFD output line range: 1 2")));
}

TEST(AncillaryDataAvailabilityBlock, KeepsTheHeightForTheNextBlock) {
    RecordedParser recorded;
    recorded.Feed("ANCILLARY DATA AVAILABILITY:\nTimecode frame height: 720\n\n");
    recorded.Feed("ANCILLARY DATA AVAILABILITY:\nTimecode line range: 5 6\n\n");
    EXPECT_EQ(BlockText<AncillaryDataAvailable>(recorded.sink.Last<AncillaryDataAvailable>()),
              "ANCILLARY DATA AVAILABILITY:\nTimecode frame height: 720\nTimecode line range: 5 6\n\n");
}

TEST(AncillaryDataAvailabilityBlock, SelectsNothingWithABadHeight) {
    const auto recorded =
        FedWith(ancillaryHeader, "Timecode frame height: 1080\nTimecode frame height: x\nTimecode line range: 1 2");
    EXPECT_EQ(recorded->sink.Errors().size(), 1U);
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<AncillaryDataAvailable>()));
}

TEST(AncillaryDataAvailabilityBlock, SelectsOneHeightForBothKindsOfRange) {
    const AncillaryDataAvailable received = Received(
        "Timecode frame height: 720\nAFD output line range: 5 6\n"
        "AFD output frame height: 1080\nTimecode line range: 7 8");
    EXPECT_TRUE(Holds(received.afdOutputLineRange[2], LineRange{5, 6}));
    EXPECT_TRUE(Holds(received.timecodeLineRange[3], LineRange{7, 8}));
}

}  // namespace
}  // namespace Morquil
