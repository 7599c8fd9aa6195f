#include "simulator/device/presets.h"

#include <gtest/gtest.h>

#include "tests/unit/simulator/lone_host.h"

namespace Morquil::Simulator {
namespace {

class PresetsTest : public testing::Test {
protected:
    LoneHost host;
};

TEST_F(PresetsTest, RestoreWhatWasSavedAndReportWhatHasChanged) {
    host.Ask("VIDEO PROC AMP:\nGain: 12\n\nAUDIO:\nAudioOut3: TTMute\n\n");
    EXPECT_EQ(host.Ask("PRESET:\nSave: 2\n\n"), "ACK\n\nPRESET:\nSave: 2\n\n");
    host.Ask("VIDEO PROC AMP:\nGain: 13\nHue: 5\n\nAUDIO:\nAudioOut3: TT750\n\nGENLOCK:\nType: External\n\n");
    EXPECT_EQ(host.Ask("PRESET:\nRecall: 2\n\n"),
              "ACK\n\nPRESET:\nRecall: 2\n\nVIDEO PROC AMP:\nGain: 12\nHue: 0\n\nGENLOCK:\nType: Input\n\n"
              "AUDIO:\nAudioOut3: TTMute\n\n");
}

TEST_F(PresetsTest, SaveWhatWasThereBeforeTheRecallInTheSameBlock) {
    EXPECT_TRUE(host.Set("VIDEO PROC AMP", "Gain: 12"));
    EXPECT_TRUE(host.Set("PRESET", "Save: 1\nRecall: 2"));
    EXPECT_EQ(host.Value("VIDEO PROC AMP", "Gain"), "0");
    EXPECT_TRUE(host.Set("PRESET", "Recall: 1"));
    EXPECT_EQ(host.Value("VIDEO PROC AMP", "Gain"), "12");
}

TEST_F(PresetsTest, RecallTheModesAndWhatDependsOnThem) {
    const std::string before = host.device.CompleteDump();
    EXPECT_TRUE(host.Set("PRESET", "Save: 1"));
    host.SetModes("625i50 PAL", "2160p50");
    const std::string answer = host.Ask("PRESET:\nRecall: 1\n\n");
    EXPECT_NE(answer.find("VIDEO INPUT:\nVideo mode: 1080i50\n"), std::string::npos);
    EXPECT_NE(answer.find("VARIABLE ASPECT RATIO AVAILABILITY:\n"), std::string::npos);
    EXPECT_EQ(host.Value("VIDEO OUTPUT AVAILABILITY", "Video demux modes"), "SingleLink DualLink");
    EXPECT_EQ(host.Value("VARIABLE ASPECT RATIO", "Variable Aspect Ratio last input width"), "1920");
}

TEST_F(PresetsTest, RecallTheFactorySettingsFromAnEmptyNumber) {
    const std::string before = host.device.CompleteDump();
    host.Ask("VIDEO PROC AMP:\nGain: 12\n\nMODE3D:\n3D flip left: Both\n\n");
    EXPECT_EQ(host.Ask("PRESET:\nRecall: 4\n\n"),
              "ACK\n\nPRESET:\nRecall: 4\n\nVIDEO PROC AMP:\nGain: 0\n\nMODE3D:\n3D flip left: Off\n\n");
    EXPECT_EQ(host.device.CompleteDump(), before);
}

TEST_F(PresetsTest, KeepTheIdentityOfTheDevice) {
    EXPECT_TRUE(host.Set("PRESET", "Save: 1"));
    host.Ask(
        "MORQUIL DEVICE:\nPanel lock: true\n\nNETWORK CONFIG:\nFriendly name: Van\n\nPRESET:\nPresetName0: Mine\n\n");
    EXPECT_EQ(host.Ask("PRESET:\nRecall: 1\n\n"), "ACK\n\nPRESET:\nRecall: 1\n\n");
    EXPECT_EQ(host.Value("MORQUIL DEVICE", "Panel lock"), "true");
    EXPECT_EQ(host.Value("NETWORK CONFIG", "Friendly name"), "Van");
    EXPECT_EQ(host.Value("PRESET", "PresetName0"), "Mine");
}

TEST_F(PresetsTest, KeepWhatTheDeviceObserves) {
    EXPECT_TRUE(host.Set("PRESET", "Save: 1"));
    EXPECT_EQ(host.device.UsePanel("set VIDEO INPUT Signal present false").refusal, "");
    host.Receive();
    EXPECT_EQ(host.Ask("PRESET:\nRecall: 1\n\n"), "ACK\n\nPRESET:\nRecall: 1\n\n");
    EXPECT_EQ(host.Value("VIDEO INPUT", "Signal present"), "false");
}

TEST_F(PresetsTest, HaveOneNumberAboveTheRangeToSaveAndTwoToRecall) {
    for (const char* const line : {"Save: 1", "Save: 6", "Save: 7", "Recall: 1", "Recall: 7", "Recall: 8"}) {
        EXPECT_TRUE(host.Set("PRESET", line)) << line;
    }
    for (const char* const line : {"Save: 0", "Save: 8", "Recall: 0", "Recall: 9"}) {
        EXPECT_FALSE(host.Set("PRESET", line)) << line;
    }
}

TEST_F(PresetsTest, KeepEachNumberApart) {
    for (int number = 1; number <= 7; ++number) {
        EXPECT_TRUE(host.Set("VIDEO PROC AMP", "Gain: " + std::to_string(number)));
        EXPECT_TRUE(host.Set("PRESET", "Save: " + std::to_string(number)));
    }
    for (int number = 7; number >= 1; --number) {
        EXPECT_TRUE(host.Set("PRESET", "Recall: " + std::to_string(number)));
        EXPECT_EQ(host.Value("VIDEO PROC AMP", "Gain"), std::to_string(number));
    }
}

TEST_F(PresetsTest, HaveNamesOfTheirOwn) {
    for (const char* const number : {"0", "5"}) {
        const std::string key = std::string("PresetName") + number;
        EXPECT_EQ(host.Ask("PRESET:\n" + key + ": Late night show\n\n"),
                  "ACK\n\nPRESET:\n" + key + ": Late night show\n\n");
        EXPECT_EQ(host.Value("PRESET", key), "Late night show");
    }
    EXPECT_EQ(host.Value("PRESET", "PresetName1"), "Sports van");
}

}  // namespace
}  // namespace Morquil::Simulator
