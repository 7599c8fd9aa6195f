// Time-outs in real time; run only on request.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/system/host/host.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {
namespace {

class Slow : public testing::Test {
protected:
    void SetUp() override {
        if (std::getenv("MORQUIL_SLOW_TESTS") == nullptr) {
            GTEST_SKIP() << "takes long; set MORQUIL_SLOW_TESTS to run it";
        }
        start_ = std::chrono::steady_clock::now();
    }
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

    ConnectionObserver connection;

private:
    std::chrono::steady_clock::time_point start_;
};

TEST_F(Slow, ASilentDeviceFailsAfterTwoMinutes) {
    ScriptedDevice device(DeviceScript{.acknowledges = false});

    const ConnectOutcome outcome = Connect(device.Address());

    EXPECT_EQ(outcome.result, failed);
    EXPECT_EQ(outcome.reason, "cfnr");
    EXPECT_FALSE(outcome.device);
    EXPECT_GT(Seconds(), 119);
    EXPECT_LT(Seconds(), 125);
    EXPECT_EQ(device.NextBlock(), "PING\n\n");
}

TEST_F(Slow, AnIdleConnectionIsPingedAfterNineSeconds) {
    ScriptedDevice device(CompleteDevice());
    const ConnectOutcome outcome = Connect(device.Address());
    ASSERT_TRUE(outcome.device);
    while (device.HasReceivedMore()) {
        device.NextBlock();
    }

    for (const int pings : {1, 2}) {
        std::string block = device.NextBlock(12);
        EXPECT_EQ(block, "PING\n\n");
        EXPECT_GT(Seconds(), 9 * pings - 0.5);
        EXPECT_LT(Seconds(), 9 * pings + 2.5);
    }
    EXPECT_EQ(DeviceName(outcome.device), u"Scripted");
}

TEST_F(Slow, AnUnacknowledgedBlockEndsTheConnectionAfterNineSeconds) {
    ScriptedDevice device(CompleteDevice());
    const RawObject connected = ConnectAsync(device.Address(), connection);
    ASSERT_TRUE(connection.AwaitCalls(1));
    device.SetAcknowledging(false);

    EXPECT_EQ(connected.QueryInterface(Iid::videoProcAmp).Call(3, 1), ok);

    ASSERT_TRUE(connection.AwaitCalls(2, 15));
    EXPECT_GT(Seconds(), 8.5);
    EXPECT_LT(Seconds(), 12);
    EXPECT_EQ(connection.Notifications(), (Strings{"connected", "disconnected cfnr"}));
}

TEST_F(Slow, FurtherChangesDoNotProlongTheWaitForAnUnacknowledgedOne) {
    ScriptedDevice device(CompleteDevice());
    const RawObject connected = ConnectAsync(device.Address(), connection);
    ASSERT_TRUE(connection.AwaitCalls(1));
    device.SetAcknowledging(false);

    EXPECT_EQ(connected.QueryInterface(Iid::videoProcAmp).Call(3, 1), ok);
    EXPECT_NE(device.NextChange(), "");
    EXPECT_FALSE(connection.AwaitCalls(2, 5));
    EXPECT_EQ(connected.QueryInterface(Iid::colorCorrection).Call(3, 1), ok);

    ASSERT_TRUE(connection.AwaitCalls(2, 15));
    EXPECT_GT(Seconds(), 8.5);
    EXPECT_LT(Seconds(), 12);
}

TEST_F(Slow, ADeviceThatKeepsTalkingIsNotPinged) {
    ScriptedDevice device(CompleteDevice());
    const ConnectOutcome outcome = Connect(device.Address());
    ASSERT_TRUE(outcome.device);
    while (device.HasReceivedMore()) {
        device.NextBlock();
    }

    // The device sends something new every six seconds.
    for (int count = 0; count < 3; ++count) {
        EXPECT_EQ(device.NextBlock(6), "");
        device.Send("VIDEO PROC AMP:\nGain: " + std::to_string(count) + "\n\n");
    }
}

}  // namespace
}  // namespace Morquil::Testing
