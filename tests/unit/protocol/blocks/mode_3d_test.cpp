#include "protocol/blocks/mode_3d.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Mode = Mode3DChangeSet;
using Mode3dAvailable = Mode3DAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;

// clang-format off
const GoldenBlock<Mode> mode{"MODE3D", {
    {"3D mode: 3DMode2Dto3D",    &Mode::mode3D,        morquilAPI3dMode2dTo3d},
    {"2D3D intensity: 50",       &Mode::intensity2D3D, 50},
    {"2D3D depth: -1",           &Mode::depth2D3D,     -1},
    {"3D roll left: 2",          &Mode::rollLeft,      2},
    {"3D roll right: 3",         &Mode::rollRight,     3},
    {"3D tilt left: 4",          &Mode::tiltLeft,      4},
    {"3D tilt right: 5",         &Mode::tiltRight,     5},
    {"3D toeIn left: 6",         &Mode::toeInLeft,     6},
    {"3D toeIn right: 7",        &Mode::toeInRight,    7},
    {"3D flip left: Horizontal", &Mode::flipLeft,      1},
    {"3D flip right: Both",      &Mode::flipRight,     3},
    {"3D output: 3DLineByLine",  &Mode::output3D,      morquilAPI3dTypeLineByLine},
    {"3D input: 3DTopBottom",    &Mode::input3D,       morquilAPI3dTypeTopBottom}}};

const GoldenBlock<Mode3dAvailable> mode3dAvailable{"MODE3D AVAILABILITY", {
    {"2D3D intensity range: 0 100", &Mode3dAvailable::intensityRange2D3D, Limits32{0, 100}},
    {"2D3D depth range: -50 50",    &Mode3dAvailable::depthRange2D3D,     Limits32{-50, 50}},
    {"3D roll range: -1 1",         &Mode3dAvailable::rollRange,          Limits32{-1, 1}},
    {"3D tilt range: -2 2",         &Mode3dAvailable::tiltRange,          Limits32{-2, 2}},
    {"3D toeIn range: -3 3",        &Mode3dAvailable::toeInRange,         Limits32{-3, 3}},
    {"Input: 525i59.94 NTSC\n"
     "Output: 720p59.94 1080i59.94", At(&Mode3dAvailable::output, 0),     Members(3, 6)},
    {"Input: 2160p50\n"
     "Output: 720p50 2160p50",      At(&Mode3dAvailable::output, 33),     Members(4, 33)}}};
// clang-format on

Mode3dAvailable ReceivedMode3d(const std::string& lines) {
    const auto recorded = FedWith("MODE3D AVAILABILITY", lines);
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events()) << lines;
    return recorded->sink.Last<Mode3dAvailable>();
}

TEST(Mode3DBlock, ReadsAndWritesEveryLine) {
    mode.ExpectReadsAndWritesEveryLine();
}

TEST(Mode3DBlock, WritesItsLinesInOrder) {
    mode.ExpectWritesItsLinesInOrder();
}

TEST(Mode3DBlock, WritesTheOutputBeforeTheInput) {
    EXPECT_EQ(WrittenBack<Mode>("MODE3D", "3D input: 3DFullFrame\n3D output: 3DSideBySide"),
              "MODE3D:\n3D output: 3DSideBySide\n3D input: 3DFullFrame\n\n");
}

TEST(Mode3DBlock, AcceptsTheModeThatHostsCannotName) {
    EXPECT_EQ(WrittenBack<Mode>("MODE3D", "3D mode: 3DModeAlign"), "MODE3D:\n3D mode: 3DModeAlign\n\n");
}

TEST(Mode3DBlock, ReportsBadWordsUnderTheirKey) {
    for (const std::string key : {"3D mode", "3D input", "3D output", "3D flip left", "3D flip right"}) {
        mode.ExpectReports({{key + ": 4D", "Failed to parse " + key + " string \"4D\"\n"}});
    }
}

TEST(Mode3DBlock, ReportsEveryBadNumberUnderOneName) {
    for (const char* const key : {"2D3D intensity", "2D3D depth", "3D roll left", "3D roll right", "3D tilt left",
                                  "3D tilt right", "3D toeIn left", "3D toeIn right"}) {
        mode.ExpectReports({NotAValue(key, "x", "Mode 3D")});
    }
}

TEST(Mode3DBlock, ReportsAnUnknownKeyWithAGoodNumberForItsKey) {
    mode.ExpectReports({{"3D pan left: 5", "Unknown Mode 3D line \"3D pan left\"\n"}});
}

TEST(Mode3DBlock, ReportsAnUnknownKeyWithABadNumberForItsNumber) {
    mode.ExpectReports({NotAValue("3D pan left", "x", "Mode 3D")});
}

TEST(Mode3DAvailabilityBlock, ReadsAndWritesEveryLine) {
    mode3dAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(Mode3DAvailabilityBlock, WritesItsLinesInOrder) {
    mode3dAvailable.ExpectWritesItsLinesInOrder();
}

TEST(Mode3DAvailabilityBlock, ReportsBadValuesAndUnknownKeys) {
    for (const char* const key :
         {"2D3D intensity range", "2D3D depth range", "3D roll range", "3D tilt range", "3D toeIn range"}) {
        mode3dAvailable.ExpectReports({NotARange(key, "5")});
    }
    mode3dAvailable.ExpectReports({{"Input: 8k", "Received invalid Mode 3D Avail input mode string \"8k\"\n"},
                                   {"3D mode: 1 2", "Unknown supported mode 3D avail line \"3D mode\"\n"}});
}

TEST(Mode3DAvailabilityBlock, IgnoresOutputsBeforeAnyInputSilently) {
    EXPECT_TRUE(IsEmpty(ReceivedMode3d("Output: 720p50")));
}

TEST(Mode3DAvailabilityBlock, SelectsNothingWithAnUnknownInput) {
    const auto recorded = FedWith("MODE3D AVAILABILITY", "Input: 720p50\nInput: 8k\nOutput: 720p50");
    EXPECT_EQ(recorded->sink.Errors().size(), 1U);
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<Mode3dAvailable>()));
}

TEST(Mode3DAvailabilityBlock, ForgetsItsInputAtTheEndOfABlock) {
    const auto recorded = FedWith("MODE3D AVAILABILITY", "Input: 720p50");
    recorded->Feed("MODE3D AVAILABILITY:\nOutput: 720p50\n\n");
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<Mode3dAvailable>()));
}

TEST(Mode3DAvailabilityBlock, NeverFindsAModeThatHoldsSpacesAmongTheOutputs) {
    const Mode3dAvailable received = ReceivedMode3d("Input: 720p50\nOutput: 525i59.94 NTSC 720p50 2K DCI 23.98p");
    EXPECT_TRUE(Holds(received.output[morquilAPIVideoMode720p50], Members(morquilAPIVideoMode720p50)));
}

TEST(Mode3DAvailabilityBlock, WritesNothingForAnInputWithoutOutputs) {
    EXPECT_EQ(BlockText<Mode3dAvailable>(ReceivedMode3d("Input: 720p50\nOutput: 8k")), "MODE3D AVAILABILITY:\n\n");
}

}  // namespace
}  // namespace Morquil
