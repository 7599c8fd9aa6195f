#include "simulator/device/settings_load.h"

#include <gtest/gtest.h>

#include "tests/unit/simulator/lone_host.h"

namespace Morquil::Simulator {
namespace {

class SettingsLoadTest : public testing::Test {
protected:
    LoneHost host;
};

TEST_F(SettingsLoadTest, CopiesTheSettingsOfAnotherDevice) {
    LoneHost other;
    other.SetModes("625i50 PAL", "2160p50");
    other.Ask("VIDEO PROC AMP:\nGain: 12\n\nAUDIO:\nAudioInPhase3: true\n\nPRESET:\nPresetName2: Mine\n\n");
    EXPECT_EQ(host.device.LoadSettings(other.device.CompleteDump()), "");
    EXPECT_EQ(host.device.CompleteDump(), other.device.CompleteDump());
}

TEST_F(SettingsLoadTest, ReportsTheDifferencesToAllHosts) {
    EXPECT_EQ(host.device.LoadSettings("VIDEO PROC AMP:\nGain: 12\nHue: 0\n\n"), "");
    EXPECT_EQ(host.Receive(), "VIDEO PROC AMP:\nGain: 12\n\n");
}

TEST_F(SettingsLoadTest, AcceptsBlocksInAnyOrderAndAnUnfinishedLastOne) {
    EXPECT_EQ(
        host.device.LoadSettings("VIDEO OUTPUT:\r\nVideo mode: 720p60\r\n\r\n\n\nVIDEO INPUT:\nVideo mode: 1080p24"),
        "");
    EXPECT_EQ(host.Value("VIDEO OUTPUT", "Video mode"), "720p60");
    EXPECT_EQ(host.Value("VIDEO INPUT", "Video mode"), "1080p24");
}

TEST_F(SettingsLoadTest, IgnoresCommandsOffersAndTheIdentityOfTheOtherDevice) {
    const std::string before = host.device.CompleteDump();
    EXPECT_EQ(host.device.LoadSettings(
                  "MORQUIL DEVICE:\nModel name: Other\nSoftware Version: 0x1\nRemote lock: true\n\n"
                  "VIDEO PROC AMP AVAILABILITY:\nGain range: -1 1\n\nPROTOCOL PREAMBLE:\nVersion: 9.1\n\n"
                  "VIDEO PROC AMP:\nReset: true\n\nVIDEO ADJUST:\nResetValues: 7\n\nALIGN:\nResetValues: 7\n\n"
                  "VIDEO OUTPUT:\nStill frame action: Capture\n\nPRESET:\nRecall: 2\nSave: 99\n\n"),
              "");
    EXPECT_EQ(host.device.CompleteDump(), before);
    EXPECT_EQ(host.device.NextDue(), std::nullopt);
    EXPECT_EQ(host.Receive(), "");
}

TEST_F(SettingsLoadTest, SetsWhatOnlyTheDeviceKnows) {
    EXPECT_EQ(host.device.LoadSettings("VIDEO INPUT:\nSignal present: false\n\nNETWORK CONFIG:\nIP address: 1\n\n"),
              "");
    EXPECT_EQ(host.Value("VIDEO INPUT", "Signal present"), "false");
    EXPECT_EQ(host.Value("NETWORK CONFIG", "IP address"), "1");
}

TEST_F(SettingsLoadTest, IgnoresKeysThatNoDeviceReportsWhateverTheirValue) {
    for (const char* const config : {"ProgCfg4_4", "Nonsense"}) {
        const std::string line = std::string("Metadata program config: ") + config + "\n";
        EXPECT_EQ(host.device.LoadSettings("AUDIO:\n" + line + "Metadata dialog level: -27\n\n"), "");
        EXPECT_EQ(host.Value("AUDIO", "Metadata dialog level"), "-27");
    }
    EXPECT_EQ(host.device.LoadSettings("ALIGN:\nResetValues: all\n\n"), "");
}

struct RefusedText {
    const char* text;
    const char* error;
};

TEST_F(SettingsLoadTest, ReportsTheFirstErrorAndChangesNothing) {
    const std::string before = host.device.CompleteDump();
    const RefusedText errors[] = {
        {"VIDEO PROC AMP:\nBlack: 5\nGain: 61\nSharp: 99\n\n",
         "VIDEO PROC AMP, Gain: 61: the device does not offer this value"},
        {"AUDIO:\nAudioInLevel4: 13\n\n", "AUDIO, AudioInLevel4: 13: the device does not offer this value"},
        {"GENLOCK:\nLine offset: 4\nType: Sun\n\n", "GENLOCK, Type: Sun: Failed to parse Type string \"Sun\""},
        {"GENLOCK:\nTint: 4\n\n", "GENLOCK, Tint: 4: Unknown genlock line \"Tint\""},
        {"GENLOCK:\nType\n\n", "GENLOCK, Type: Received line with no colon character"},
        {"COFFEE:\nSugar: 2\n\n", "COFFEE: Received unknown block header \"COFFEE\""},
        {"VIDEO PROC AMP:\nGain: 12\n\nVIDEO OUTPUT:\nVideo mode: 720p60\n\n",
         "VIDEO OUTPUT, Video mode: 720p60: the device does not offer this value"},
    };
    for (const RefusedText& row : errors) {
        EXPECT_EQ(host.device.LoadSettings(row.text), row.error);
        EXPECT_EQ(host.device.CompleteDump(), before) << row.text;
    }
    EXPECT_EQ(host.Receive(), "");
}

}  // namespace
}  // namespace Morquil::Simulator
