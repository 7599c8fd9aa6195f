#include "simulator/blocks/commands.h"

#include <gtest/gtest.h>

#include "tests/unit/simulator/lone_host.h"

namespace Morquil::Simulator {
namespace {

constexpr const char* factoryProcAmp =
    "VIDEO PROC AMP:\nGain: 0\nBlack: 0\nSaturation: 0\nHue: 0\nRY: 0\nBY: 0\nSharp: 0\n\n";

class CommandsTest : public testing::Test {
protected:
    LoneHost host;
};

TEST_F(CommandsTest, ResetReportsAllValuesAfterItsEcho) {
    host.Ask("VIDEO PROC AMP:\nGain: 12\n\n");
    EXPECT_EQ(host.Ask("VIDEO PROC AMP:\nReset: true\n\n"),
              std::string("ACK\n\nVIDEO PROC AMP:\nReset: true\n\n") + factoryProcAmp);
    EXPECT_EQ(host.Value("VIDEO PROC AMP", "Gain"), "0");
}

TEST_F(CommandsTest, AResetOfFalseResetsNothing) {
    host.Ask("VIDEO PROC AMP:\nGain: 12\n\n");
    EXPECT_EQ(host.Ask("VIDEO PROC AMP:\nReset: false\n\n"), "ACK\n\n");
    EXPECT_EQ(host.Value("VIDEO PROC AMP", "Gain"), "12");
}

TEST_F(CommandsTest, AValueSentTogetherWithAResetOutlivesIt) {
    host.Ask("VIDEO PROC AMP:\nReset: true\nGain: 5\n\n");
    EXPECT_EQ(host.Value("VIDEO PROC AMP", "Gain"), "5");
}

TEST_F(CommandsTest, ResetValuesResetsTheKeysWhoseBitsAreSet) {
    host.Ask("VIDEO ADJUST:\nRed: 1\nGreen: 2\nBlue: 3\n\n");
    EXPECT_EQ(host.Ask("VIDEO ADJUST:\nResetValues: 5\n\n"),
              "ACK\n\nVIDEO ADJUST:\nResetValues: 5\n\nVIDEO ADJUST:\nRed: 0\nBlue: 0\n\n");
    EXPECT_EQ(host.Value("VIDEO ADJUST", "Green"), "2");
}

struct Reset {
    const char* block;
    const char* key;
    const char* other;
    std::uint32_t bit;
};

TEST_F(CommandsTest, ResetValuesWorksInEveryBlockThatHasIt) {
    const Reset resets[] = {
        {"VIDEO PROC AMP", "Sharp", "7", 6},
        {"VIDEO ADJUST", "Aspect fill Cr", "600", 9},
        {"ANCILLARY DATA", "Timecode loss mode", "Stop", 5},
        {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio zoom/crop", "true", 12},
        {"ALIGN", "Align trim Y right", "9", 11},
        {"AUDIO", "AudioInLevel15", "-3", 3},
    };
    for (const Reset& reset : resets) {
        const std::string before = host.Value(reset.block, reset.key);
        EXPECT_TRUE(host.Set(reset.block, std::string(reset.key) + ": " + reset.other)) << reset.block;
        EXPECT_EQ(host.Value(reset.block, reset.key), reset.other) << reset.block;
        EXPECT_TRUE(host.Set(reset.block, "ResetValues: " + std::to_string(1U << reset.bit))) << reset.block;
        EXPECT_EQ(host.Value(reset.block, reset.key), before) << reset.block;
    }
}

TEST_F(CommandsTest, AllBitsAreReadAsMinusOne) {
    const std::string before = host.device.CompleteDump();
    host.Ask("VIDEO ADJUST:\nRed: 1\nAspect fill Cr: 600\n\n");
    EXPECT_TRUE(host.Set("VIDEO ADJUST", "ResetValues: -1"));
    EXPECT_EQ(host.device.CompleteDump(), before);
}

TEST_F(CommandsTest, AResetSetsTheNearestValueWhereTheFactoryValueIsNotOffered) {
    host.SetModes("1080i59.94", "525i59.94 NTSC");
    EXPECT_TRUE(host.Set("ANCILLARY DATA", "Timecode output line: 15"));
    EXPECT_EQ(host.Ask("ANCILLARY DATA:\nResetValues: 4\n\n"),
              "ACK\n\nANCILLARY DATA:\nResetValues: 4\n\nANCILLARY DATA:\nTimecode output line: 10\n\n");
}

TEST_F(CommandsTest, NoResetTouchesWhatTheDeviceObserves) {
    host.SetModes("720p50", "1080i50");
    const std::string reply = host.Ask("ANCILLARY DATA:\nResetValues: -1\n\n");
    EXPECT_EQ(reply.find("last input height"), std::string::npos) << reply;
    EXPECT_EQ(host.Value("ANCILLARY DATA", "Ancillary Data last input height"), "720");
}

TEST_F(CommandsTest, TimecodeStartsFromTheSourceThatIsSetWithIt) {
    EXPECT_EQ(host.Ask("ANCILLARY DATA:\nTimecode start source: Input\nTimecode start: true\n\n"),
              "ACK\n\nANCILLARY DATA:\nTimecode start source: Input\nTimecode start: true\n\n");
    EXPECT_EQ(host.Value("ANCILLARY DATA", "Timecode start source"), "Input");
}

TEST_F(CommandsTest, AreEchoedButNotKept) {
    const std::string before = host.device.CompleteDump();
    EXPECT_EQ(host.Ask("PRESET:\nSave: 2\nRecall: 3\n\n"), "ACK\n\nPRESET:\nSave: 2\nRecall: 3\n\n");
    EXPECT_EQ(host.Ask("ANCILLARY DATA:\nTimecode start: true\n\n"),
              "ACK\n\nANCILLARY DATA:\nTimecode start: true\n\n");
    EXPECT_EQ(host.device.CompleteDump(), before);
}

}  // namespace
}  // namespace Morquil::Simulator
