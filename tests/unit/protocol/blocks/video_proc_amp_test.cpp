#include "protocol/blocks/video_proc_amp.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using ProcAmp = VideoProcAmpChangeSet;
using VideoProcAmpAvailable = VideoProcAmpAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;

// clang-format off
const GoldenBlock<ProcAmp> procAmp{"VIDEO PROC AMP", {
    {"Gain: -60",          &ProcAmp::gain,        -60},
    {"Black: 1",           &ProcAmp::black,       1},
    {"Saturation: 2",      &ProcAmp::saturation,  2},
    {"Hue: -180",          &ProcAmp::hue,         -180},
    {"RY: 3",              &ProcAmp::ry,          3},
    {"BY: 4",              &ProcAmp::by,          4},
    {"Sharp: 5",           &ProcAmp::sharp,       5},
    {"ResetValues: 127",   &ProcAmp::resetValues, 127U},
    {"Reset: true",        &ProcAmp::reset,       true}}};

const GoldenBlock<VideoProcAmpAvailable> videoProcAmpAvailable{"VIDEO PROC AMP AVAILABILITY", {
    {"Gain range: -60 60",         &VideoProcAmpAvailable::gainRange,       Limits32{-60, 60}},
    {"Black range: -30 30",        &VideoProcAmpAvailable::blackRange,      Limits32{-30, 30}},
    {"Saturation range: -100 100", &VideoProcAmpAvailable::saturationRange, Limits32{-100, 100}},
    {"Hue range: -179 180",        &VideoProcAmpAvailable::hueRange,        Limits32{-179, 180}},
    {"RY range: -1 1",             &VideoProcAmpAvailable::ryRange,         Limits32{-1, 1}},
    {"BY range: -2 2",             &VideoProcAmpAvailable::byRange,         Limits32{-2, 2}},
    {"Sharp range: 0 20",          &VideoProcAmpAvailable::sharpRange,      Limits32{0, 20}}}};
// clang-format on

TEST(VideoProcAmpBlock, ReadsAndWritesEveryLine) {
    procAmp.ExpectReadsAndWritesEveryLine();
}

TEST(VideoProcAmpBlock, WritesItsLinesInOrder) {
    procAmp.ExpectWritesItsLinesInOrder();
}

TEST(VideoProcAmpBlock, ReportsEveryBadLevelUnderOneName) {
    for (const char* const key : {"Gain", "Black", "Saturation", "Hue", "RY", "BY", "Sharp"}) {
        procAmp.ExpectReports({NotAValue(key, "x", "VideoProcAmp")});
    }
}

TEST(VideoProcAmpBlock, ReportsABadResetUnderItsKey) {
    procAmp.ExpectReports({NotAValue("ResetValues", "all"), NotAValue("Reset", "1")});
}

TEST(VideoProcAmpBlock, ReportsAnUnknownKeyWithAGoodValueForItsKey) {
    procAmp.ExpectReports({{"Tint: 5", "Unknown video proc amp line \"Tint\"\n"}});
}

TEST(VideoProcAmpBlock, ReportsAnUnknownKeyWithABadValueForItsValue) {
    procAmp.ExpectReports({{"Tint: x", "Failed to parse \"VideoProcAmp\" value string \"x\"\n"}});
}

TEST(VideoProcAmpBlock, TreatsAResetOfFalseAsNoReset) {
    const auto recorded = FedWith("VIDEO PROC AMP", "Reset: false");
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events());
    EXPECT_FALSE(recorded->sink.Last<ProcAmp>().reset.IsPresent());
    EXPECT_EQ(BlockText<ProcAmp>(recorded->sink.Last<ProcAmp>()), "VIDEO PROC AMP:\n\n");
}

TEST(VideoProcAmpBlock, DoesNotTakeBackAResetWithAResetOfFalse) {
    EXPECT_EQ(WrittenBack<ProcAmp>("VIDEO PROC AMP", "Reset: true\nReset: false"), "VIDEO PROC AMP:\nReset: true\n\n");
}

TEST(VideoProcAmpBlock, WritesTheResetValuesInSignedNotation) {
    EXPECT_EQ(WrittenBack<ProcAmp>("VIDEO PROC AMP", "ResetValues: 2147483648"),
              "VIDEO PROC AMP:\nResetValues: -2147483648\n\n");
}

TEST(VideoProcAmpAvailabilityBlock, ReadsAndWritesEveryLine) {
    videoProcAmpAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(VideoProcAmpAvailabilityBlock, WritesItsLinesInOrder) {
    videoProcAmpAvailable.ExpectWritesItsLinesInOrder();
}

TEST(VideoProcAmpAvailabilityBlock, ReportsEveryBadRangeUnderOneName) {
    for (const std::string key : {"Gain", "Black", "Saturation", "Hue", "RY", "BY", "Sharp"}) {
        videoProcAmpAvailable.ExpectReports({NotARange(key + " range", "5", "VideoProcAmpAvailability")});
    }
}

TEST(VideoProcAmpAvailabilityBlock, ReportsAnUnknownKeyWithAGoodRangeForItsKey) {
    videoProcAmpAvailable.ExpectReports(
        {{"Tint range: 1 5", "Unknown video proc amp availability line \"Tint range\"\n"}});
}

TEST(VideoProcAmpAvailabilityBlock, ReportsAnUnknownKeyWithABadRangeForItsRange) {
    videoProcAmpAvailable.ExpectReports({NotARange("Tint range", "5", "VideoProcAmpAvailability")});
}

}  // namespace
}  // namespace Morquil
