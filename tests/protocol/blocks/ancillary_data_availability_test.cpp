#include <gtest/gtest.h>

#include <string>

#include "protocol/blocks/ancillary_data.h"
#include "tests/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Available = AncillaryDataAvailabilityChangeSet;
using Lines = Range<std::uint32_t>;

// clang-format off
const GoldenBlock<Available> available{"ANCILLARY DATA AVAILABILITY", {
    {"Timecode modes: Off Input JamSync",              &Available::timecodeModes,                 Members(0, 1, 4)},
    {"Output: 525i59.94 NTSC\n"
     "Timecode drop frame modes: Auto DF NDF",         At(&Available::timecodeDropFrameModes, 0), Members(0, 1, 2)},
    {"Output: 2160p50\n"
     "Timecode drop frame modes: NDF",                 At(&Available::timecodeDropFrameModes, 33), Members(2)},
    {"Timecode sources: VITC LTC",                     &Available::timecodeSources,               Members(0, 1)},
    {"Timecode loss modes: Continue Stop",             &Available::timecodeLossModes,             Members(0, 1)},
    {"Timecode start sources: User Input",             &Available::timecodeStartSources,          Members(0, 1)},
    {"Timecode frame height: 486\n"
     "Timecode line range: 10 20",                     At(&Available::timecodeLineRange, 0),      Lines{10, 20}},
    {"Timecode frame height: 576\n"
     "Timecode line range: 11 21",                     At(&Available::timecodeLineRange, 1),      Lines{11, 21}},
    {"Timecode frame height: 720\n"
     "Timecode line range: 12 22",                     At(&Available::timecodeLineRange, 2),      Lines{12, 22}},
    {"Timecode frame height: 1080\n"
     "Timecode line range: 13 23",                     At(&Available::timecodeLineRange, 3),      Lines{13, 23}},
    {"Timecode frame height: 2160\n"
     "Timecode line range: 14 4294967295",             At(&Available::timecodeLineRange, 4),      Lines{14, ~0U}},
    {"Index reactions: Off On",                        &Available::indexReactions,                Members(0, 1)},
    {"AFD insert types: Off Auto 0000 1111",           &Available::afdInsertTypes,                Members(0, 1, 3, 18)},
    {"AFD output frame height: 486\n"
     "AFD output line range: 1 2",                     At(&Available::afdOutputLineRange, 0),     Lines{1, 2}},
    {"AFD output frame height: 576\n"
     "AFD output line range: 3 4",                     At(&Available::afdOutputLineRange, 1),     Lines{3, 4}},
    {"AFD output frame height: 720\n"
     "AFD output line range: 5 6",                     At(&Available::afdOutputLineRange, 2),     Lines{5, 6}},
    {"AFD output frame height: 1080\n"
     "AFD output line range: 7 8",                     At(&Available::afdOutputLineRange, 3),     Lines{7, 8}},
    {"AFD output frame height: 2160\n"
     "AFD output line range: 9 10",                    At(&Available::afdOutputLineRange, 4),     Lines{9, 10}},
    {"CC input line range: 8 16",                      &Available::ccInputLineRange,              Lines{8, 16}},
    {"CC output line range: 9 17",                     &Available::ccOutputLineRange,             Lines{9, 17}},
    {"CC service2 sources: CC2 CC3",                   &Available::ccService2Sources,             Members(0, 1)},
    {"CC service languages: English Spanish",          &Available::ccServiceLanguages,            Members(0, 4)}}};
// clang-format on

const std::string header = "ANCILLARY DATA AVAILABILITY";

Available Received(const std::string& lines) {
    const auto recorded = FedWith(header, lines);
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events()) << lines;
    return recorded->sink.Last<Available>();
}

TEST(AncillaryDataAvailabilityBlock, ReadsAndWritesEveryLine) {
    available.ExpectReadsAndWritesEveryLine();
}

TEST(AncillaryDataAvailabilityBlock, WritesItsLinesInOrder) {
    available.ExpectWritesItsLinesInOrder();
}

TEST(AncillaryDataAvailabilityBlock, ReportsBadValuesAndUnknownKeys) {
    available.ExpectReports({
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

TEST(AncillaryDataAvailabilityBlock, IgnoresDropFrameModesBeforeAnyOutputInSilence) {
    EXPECT_TRUE(IsEmpty(Received("Timecode drop frame modes: DF")));
}

TEST(AncillaryDataAvailabilityBlock, SelectsNothingWithAnUnknownOutput) {
    const auto recorded = FedWith(header, "Output: 720p50\nOutput: 8k\nTimecode drop frame modes: DF");
    EXPECT_EQ(recorded->sink.Errors().size(), 1U);
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<Available>()));
}

TEST(AncillaryDataAvailabilityBlock, ForgetsItsOutputAtTheEndOfABlock) {
    const auto recorded = FedWith(header, "Output: 720p50");
    recorded->Feed(header + ":\nTimecode drop frame modes: DF\n\n");
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<Available>()));
}

TEST(AncillaryDataAvailabilityBlock, WritesNothingForAnOutputWithoutDropFrameModes) {
    EXPECT_EQ(BlockText<Available>(Received("Output: 720p50\nTimecode drop frame modes: Never")), header + ":\n\n");
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
    EXPECT_EQ(BlockText<Available>(recorded.sink.Last<Available>()),
              "ANCILLARY DATA AVAILABILITY:\nTimecode frame height: 720\nTimecode line range: 5 6\n\n");
}

TEST(AncillaryDataAvailabilityBlock, SelectsNothingWithABadHeight) {
    const auto recorded =
        FedWith(header, "Timecode frame height: 1080\nTimecode frame height: x\nTimecode line range: 1 2");
    EXPECT_EQ(recorded->sink.Errors().size(), 1U);
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<Available>()));
}

TEST(AncillaryDataAvailabilityBlock, SelectsOneHeightForBothKindsOfRange) {
    const Available received = Received(
        "Timecode frame height: 720\nAFD output line range: 5 6\n"
        "AFD output frame height: 1080\nTimecode line range: 7 8");
    EXPECT_TRUE(Holds(received.afdOutputLineRange[2], Lines{5, 6}));
    EXPECT_TRUE(Holds(received.timecodeLineRange[3], Lines{7, 8}));
}

}  // namespace
}  // namespace Morquil
