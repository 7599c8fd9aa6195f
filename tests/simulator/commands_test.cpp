#include "simulator/commands.h"

#include <gtest/gtest.h>

#include "simulator/device_state.h"

namespace Morquil::Simulator {
namespace {

constexpr const char* resetProcAmp =
    "VIDEO PROC AMP:\nGain: 0\nBlack: 0\nSaturation: 0\nHue: 0\nRY: 0\nBY: 0\nSharp: 0\n\n";

class CommandsTest : public testing::Test {
protected:
    DeviceState state{DeviceIdentity{}};
};

TEST_F(CommandsTest, ResetReportsAllValuesBehindItsEcho) {
    VideoProcAmpChangeSet change;
    change.gain.Set(12);
    state.Apply<VideoProcAmpChangeSet>(change);
    VideoProcAmpChangeSet reset;
    reset.reset.Set(true);
    EXPECT_EQ(state.Apply<VideoProcAmpChangeSet>(reset),
              std::string("VIDEO PROC AMP:\nReset: true\n\n") + resetProcAmp);
    EXPECT_EQ(DeviceText<VideoProcAmpChangeSet>(state.Of<VideoProcAmpChangeSet>()), resetProcAmp);
}

TEST_F(CommandsTest, AValueSentTogetherWithAResetOutlivesIt) {
    VideoProcAmpChangeSet change;
    change.reset.Set(true);
    change.gain.Set(5);
    state.Apply<VideoProcAmpChangeSet>(change);
    EXPECT_EQ(state.Of<VideoProcAmpChangeSet>().gain.Get(), 5);
}

TEST_F(CommandsTest, ResetValuesResetsTheKeysWhoseBitsAreSet) {
    VideoAdjustChangeSet change;
    change.red.Set(1);
    change.green.Set(2);
    change.blue.Set(3);
    state.Apply<VideoAdjustChangeSet>(change);
    VideoAdjustChangeSet reset;
    reset.resetValues.Set(0b101);
    EXPECT_EQ(state.Apply<VideoAdjustChangeSet>(reset),
              "VIDEO ADJUST:\nResetValues: 5\n\nVIDEO ADJUST:\nRed: 0\nBlue: 0\n\n");
    EXPECT_EQ(state.Of<VideoAdjustChangeSet>().green.Get(), 2);
}

TEST_F(CommandsTest, CapturingAStillFrameFillsTheStore) {
    VideoOutputChangeSet change;
    change.stillFrameAction.Set(morquilAPIStillFrameCapture);
    EXPECT_EQ(state.Apply<VideoOutputChangeSet>(change),
              "VIDEO OUTPUT:\nStill frame action: Capture\n\n"
              "VIDEO OUTPUT:\nStill frame present: true\nStill store complete: true\n\n");
}

TEST_F(CommandsTest, DeletingTheStillFrameEmptiesTheStore) {
    VideoOutputChangeSet change;
    change.stillFrameAction.Set(morquilAPIStillFrameCapture);
    state.Apply<VideoOutputChangeSet>(change);
    change.stillFrameAction.Set(morquilAPIStillFrameDelete);
    state.Apply<VideoOutputChangeSet>(change);
    EXPECT_FALSE(state.Of<VideoOutputChangeSet>().stillFramePresent.Get());
    EXPECT_FALSE(state.Of<VideoOutputChangeSet>().stillStoreComplete.Get());
}

TEST_F(CommandsTest, PreviewingTheStillFrameCompletes) {
    VideoOutputChangeSet change;
    change.stillFrameAction.Set(morquilAPIStillFramePreview);
    state.Apply<VideoOutputChangeSet>(change);
    EXPECT_TRUE(state.Of<VideoOutputChangeSet>().stillPreviewComplete.Get());
}

TEST_F(CommandsTest, AreEchoedButNotKept) {
    const std::string before = state.Greeting();
    PresetChangeSet preset;
    preset.save.Set(2);
    preset.recall.Set(3);
    EXPECT_EQ(state.Apply<PresetChangeSet>(preset), "PRESET:\nSave: 2\nRecall: 3\n\n");
    AncillaryDataChangeSet start;
    start.timecodeStart.Set(true);
    EXPECT_EQ(state.Apply<AncillaryDataChangeSet>(start), "ANCILLARY DATA:\nTimecode start: true\n\n");
    EXPECT_EQ(state.Greeting(), before);
}

}  // namespace
}  // namespace Morquil::Simulator
