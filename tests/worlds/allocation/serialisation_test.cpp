// A received block is compared with what was sent, as text, only while the echo of something sent is outstanding.
#include "tests/worlds/allocation/serialisation_count.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/device/device_rig.h"

namespace Morquil::Testing {
namespace {

/// Settings of several features, each block whole.
constexpr int settingsBlocks = 4;
constexpr const char* someSettings =
    "VIDEO INPUT:\nWide SD aspect: true\n\n"
    "VIDEO ADJUST:\nRed: 7\n\n"
    "AUDIO:\nAnalog input ref level: 20\n\n"
    "GENLOCK:\nLine offset: 3\n\n";

long SerialisationsOf(DeviceRig& rig, const std::string& bytes) {
    const long before = SerialisationCount();
    rig.DeviceSends(bytes);
    return SerialisationCount() - before;
}

TEST(Serialisation, IsNeverNeededWhileNothingSentIsOutstanding) {
    DeviceRig rig;
    rig.ConnectToGoodDevice();
    EXPECT_EQ(SerialisationsOf(rig, CompleteText()), 0);
    EXPECT_EQ(SerialisationsOf(rig, someSettings), 0);
}

TEST(Serialisation, HappensOncePerBlockUntilTheEchoHasCome) {
    DeviceRig rig;
    rig.ConnectToGoodDevice(DeviceAnswerWithoutEcho);
    ASSERT_EQ(rig.ProcAmp()->SetGain(12), S_OK);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(SerialisationsOf(rig, someSettings), settingsBlocks);
    EXPECT_EQ(SerialisationsOf(rig, "VIDEO PROC AMP:\nGain: 12\n\n"), 1);
    EXPECT_EQ(SerialisationsOf(rig, someSettings), 0);
}

TEST(Serialisation, HappensOnceForEachMessageThatIsSent) {
    DeviceRig rig;
    rig.ConnectToGoodDevice(DeviceAnswerWithoutEcho);
    const long before = SerialisationCount();
    ASSERT_EQ(rig.ProcAmp()->SetGain(12), S_OK);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(SerialisationCount() - before, 1);
}

TEST(Serialisation, IsNotNeededForOtherBlocks) {
    DeviceRig rig;
    rig.ConnectToGoodDevice(DeviceAnswerWithoutEcho);
    ASSERT_EQ(rig.ProcAmp()->SetGain(12), S_OK);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(SerialisationsOf(rig, "PING\n\nACK\n\nSCOPES:\nWaveform: true\n\n"), 0);
    EXPECT_EQ(SerialisationsOf(rig, "VIDEO ADJUST AVAILABILITY:\nRed range: -50 50\n\n"), 0);
}

}  // namespace
}  // namespace Morquil::Testing
