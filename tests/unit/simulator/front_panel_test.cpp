#include "simulator/device/front_panel.h"

#include <gtest/gtest.h>

namespace Morquil::Simulator {
namespace {

struct Command {
    const char* text;
    const char* report;
};

class FrontPanelTest : public testing::Test {
protected:
    DeviceState state{DeviceIdentity{}};
};

TEST_F(FrontPanelTest, SetsBlocksAndKeysOfSeveralWords) {
    const Command commands[] = {
        {"set VIDEO PROC AMP Gain 12", "VIDEO PROC AMP:\nGain: 12\n\n"},
        {"set VIDEO INPUT Video mode 625i50 PAL", "VIDEO INPUT:\nVideo mode: 625i50 PAL\n\n"},
        {"set VIDEO OUTPUT Video mode 1080p50", "VIDEO OUTPUT:\nVideo mode: 1080p50\n\n"},
        {"set AUDIO AudioOut12 TTMute", "AUDIO:\nAudioOut12: TTMute\n\n"},
        {"set AUDIO AudioInPhase3 true", "AUDIO:\nAudioInPhase3: 1\n\n"},
        {"set PRESET PresetName0 Late night show", "PRESET:\nPresetName0: Late night show\n\n"},
        {"set ANCILLARY DATA Timecode start source Input", "ANCILLARY DATA:\nTimecode start source: Input\n\n"},
        {"set ANCILLARY DATA Timecode start true", "ANCILLARY DATA:\nTimecode start: true\n\n"},
        {"set MODE3D 3D mode 3DModeConvert", "MODE3D:\n3D mode: 3DModeConvert\n\n"},
    };
    for (const Command& command : commands) {
        const PanelOutcome outcome = UseFrontPanel(state, command.text);
        EXPECT_EQ(outcome.refusal, "") << command.text;
        // The effects of a mode change are reported after it.
        EXPECT_EQ(outcome.report.substr(0, std::string_view(command.report).size()), command.report);
    }
}

TEST_F(FrontPanelTest, AcceptsNamesInAnyCaseAndWithExtraBlanks) {
    EXPECT_EQ(UseFrontPanel(state, "  set  video proc amp  GAIN  12 \r").report, "VIDEO PROC AMP:\nGain: 12\n\n");
}

TEST_F(FrontPanelTest, SaysWhyItRefusesACommandAndChangesNothing) {
    const std::string before = state.Greeting();
    const Command commands[] = {
        {"turn Gain 12", "unknown command \"turn Gain 12\"; try: set VIDEO PROC AMP Gain 12"},
        {"set COFFEE Sugar 2", "expected the name of a block of settings, not \"COFFEE Sugar 2\""},
        {"set PRESET AVAILABILITY Preset range 1 2",
         "expected a key of PRESET and a value, not \"AVAILABILITY Preset range 1 2\""},
        {"set VIDEO PROC AMP Tint 2", "expected a key of VIDEO PROC AMP and a value, not \"Tint 2\""},
        {"set VIDEO PROC AMP Gain", "expected a key of VIDEO PROC AMP and a value, not \"Gain\""},
        {"set VIDEO PROC AMP Gain x", "Failed to parse \"VideoProcAmp\" value string \"x\""},
        {"set VIDEO PROC AMP Gain 9999", "VIDEO PROC AMP, Gain: 9999: the device does not offer this value"},
        {"set AUDIO AudioOut16 TTMute", "Unknown Audio line \"AudioOut16\""},
        {"set VIDEO INPUT Timecode present Maybe", "\"Maybe\" is not a value of \"Timecode present\""},
    };
    for (const Command& command : commands) {
        const PanelOutcome outcome = UseFrontPanel(state, command.text);
        EXPECT_EQ(outcome.refusal, command.report);
        EXPECT_EQ(outcome.report, "") << command.text;
    }
    EXPECT_EQ(state.Greeting(), before);
}

}  // namespace
}  // namespace Morquil::Simulator
