#include "delivery/awaited_lines.h"

#include <gtest/gtest.h>

#include <string_view>

namespace Morquil {
namespace {

using Comparison = AwaitedLines::Comparison;

constexpr std::size_t anySlot = 6;

bool ReportsAll(std::size_t /*slot*/, std::string_view /*key*/) {
    return true;
}

bool ReportsNoReset(std::size_t slot, std::string_view key) {
    return slot != anySlot || key != "Reset";
}

AwaitedLines LevelsAwaited() {
    return {"VIDEO PROC AMP:\nGain: 5\nHue: -3\n\n", anySlot, &ReportsAll};
}

TEST(AwaitedLines, AreNoneAtFirst) {
    const AwaitedLines lines;
    EXPECT_TRUE(lines.IsEmpty());
    EXPECT_EQ(lines.Compare("VIDEO PROC AMP:\nGain: 5\n\n"), Comparison::NoneReported);
}

TEST(AwaitedLines, AreTheLinesWithKeys) {
    EXPECT_FALSE(LevelsAwaited().IsEmpty());
    EXPECT_TRUE(AwaitedLines("VIDEO PROC AMP:\n\n", anySlot, &ReportsAll).IsEmpty());
}

TEST(AwaitedLines, LeaveOutWhatIsNeverReported) {
    EXPECT_TRUE(AwaitedLines("VIDEO PROC AMP:\nReset: 0\n\n", anySlot, &ReportsNoReset).IsEmpty());
    EXPECT_FALSE(AwaitedLines("VIDEO PROC AMP:\nReset: 0\n\n", anySlot + 1, &ReportsNoReset).IsEmpty());
}

TEST(AwaitedLines, CompareWithAReport) {
    const AwaitedLines lines = LevelsAwaited();
    EXPECT_EQ(lines.Compare("VIDEO PROC AMP:\nGain: 5\nHue: -3\n\n"), Comparison::Same);
    EXPECT_EQ(lines.Compare("VIDEO PROC AMP:\nHue: -3\nSharp: 9\n\n"), Comparison::Same);
    EXPECT_EQ(lines.Compare("VIDEO PROC AMP:\nGain: 5\nHue: 0\n\n"), Comparison::Different);
    EXPECT_EQ(lines.Compare("VIDEO PROC AMP:\nGain: 50\n\n"), Comparison::Different);
    EXPECT_EQ(lines.Compare("VIDEO PROC AMP:\nSharp: 9\n\n"), Comparison::NoneReported);
    EXPECT_EQ(lines.Compare("VIDEO PROC AMP:\n\n"), Comparison::NoneReported);
    EXPECT_EQ(lines.Compare(""), Comparison::NoneReported);
}

TEST(AwaitedLines, DistinguishKeysThatBeginAlike) {
    const AwaitedLines lines("AUDIO:\nAudioOut1: 3\n\n", anySlot, &ReportsAll);
    EXPECT_EQ(lines.Compare("AUDIO:\nAudioOut10: 3\nAudioOut: 3\n\n"), Comparison::NoneReported);
}

TEST(AwaitedLines, CompareTextsThatContainColonsOrNothing) {
    const AwaitedLines name("DEVICE FILENAMES:\nStill frame: a: b\n\n", anySlot, &ReportsAll);
    EXPECT_EQ(name.Compare("DEVICE FILENAMES:\nStill frame: a: b\n\n"), Comparison::Same);
    EXPECT_EQ(name.Compare("DEVICE FILENAMES:\nStill frame: \n\n"), Comparison::Different);
}

TEST(AwaitedLines, AreRemovedByTheirKeys) {
    AwaitedLines lines = LevelsAwaited();
    lines.RemoveReported("VIDEO PROC AMP:\nGain: 99\n\n");
    EXPECT_FALSE(lines.IsEmpty());
    EXPECT_EQ(lines.Compare("VIDEO PROC AMP:\nGain: 5\n\n"), Comparison::NoneReported);
    lines.RemoveReported("VIDEO PROC AMP:\nSharp: 1\n\n");
    EXPECT_FALSE(lines.IsEmpty());
    lines.RemoveReported("VIDEO PROC AMP:\nHue: -3\nGain: 5\n\n");
    EXPECT_TRUE(lines.IsEmpty());
}

}  // namespace
}  // namespace Morquil
