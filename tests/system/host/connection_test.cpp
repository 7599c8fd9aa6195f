// How connections come and go, over real sockets.
#include <gtest/gtest.h>

#include <chrono>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/process_counts.h"
#include "tests/kit/watchdog.h"
#include "tests/system/host/host.h"
#include "tests/system/host/refusals.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {
namespace {

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

std::string UnusedAddress() {
    DeviceAddress address;
    address.Listener().Close();
    return address.Text();
}

TEST(Connecting, ReturnsAConnectedDevice) {
    ScriptedDevice device(CompleteDevice());

    const ConnectOutcome outcome = Connect(device.Address());

    EXPECT_EQ(outcome.result, ok);
    EXPECT_EQ(outcome.reason, "cfnr");
    ASSERT_TRUE(outcome.device);
    EXPECT_EQ(DeviceName(outcome.device), u"Scripted");
    EXPECT_EQ(outcome.device.References(), 1U);
    Disconnect(outcome.device);
    EXPECT_TRUE(device.AwaitHostGone());
}

TEST(Connecting, NotifiesTheObserverOfAnAsynchronousAttempt) {
    ScriptedDevice device(CompleteDevice());
    ConnectionObserver observer;

    const RawObject connected = ConnectAsync(device.Address(), observer);

    ASSERT_TRUE(connected);
    ASSERT_TRUE(observer.AwaitCalls(1));
    EXPECT_EQ(observer.Notifications(), Strings{"connected"});
    EXPECT_EQ(DeviceName(connected), u"Scripted");
    Disconnect(connected);
    EXPECT_EQ(observer.Notifications(), (Strings{"connected", "disconnected cfnr"}));
}

TEST(Connecting, NeedsNoPreamble) {
    DeviceScript script = CompleteDevice();
    script.greeting = std::string(deviceBlock) + settingsBlocks;
    ScriptedDevice device(script);

    EXPECT_EQ(Connect(device.Address()).result, ok);
}

TEST(Connecting, FailsAtOnceWhereNothingListens) {
    const std::string address = UnusedAddress();
    const Stopwatch stopwatch;

    const ConnectOutcome outcome = Connect(address);

    EXPECT_EQ(outcome.result, failed);
    EXPECT_EQ(outcome.reason, "cfnr");
    EXPECT_FALSE(outcome.device);
    EXPECT_LT(stopwatch.Seconds(), 3);
}

TEST(Connecting, NotifiesTheObserverThatNothingListens) {
    ConnectionObserver observer;

    const RawObject device = ConnectAsync(UnusedAddress(), observer);

    ASSERT_TRUE(device);
    ASSERT_TRUE(observer.AwaitCalls(1));
    EXPECT_EQ(observer.Notifications(), Strings{"disconnected cfnr"});
}

TEST(Connecting, FailsAtOnceWithTheReasonOfTheDevice) {
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        ScriptedDevice device(DeviceScript{.greeting = refusal.greeting});
        const Stopwatch stopwatch;

        const ConnectOutcome outcome = Connect(device.Address());

        EXPECT_EQ(outcome.result, failed);
        EXPECT_EQ(outcome.reason, refusal.reason);
        EXPECT_FALSE(outcome.device);
        EXPECT_LT(stopwatch.Seconds(), 3);
        EXPECT_TRUE(device.AwaitHostGone());
    }
}

TEST(Connecting, NotifiesTheObserverOfTheReasonOfTheDevice) {
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        ScriptedDevice device(DeviceScript{.greeting = refusal.greeting});
        ConnectionObserver observer;

        const RawObject refused = ConnectAsync(device.Address(), observer);

        ASSERT_TRUE(observer.AwaitCalls(1));
        EXPECT_EQ(observer.Notifications(), Strings{std::string("disconnected ") + refusal.reason});
    }
}

TEST(Connecting, EndsWhenTheHostGivesUpASilentDevice) {
    ScriptedDevice device(DeviceScript{.acknowledges = false});
    ConnectionObserver observer;
    const RawObject silent = ConnectAsync(device.Address(), observer);
    ASSERT_TRUE(device.AwaitHost());

    WithinASecond([&] { Disconnect(silent); });

    EXPECT_EQ(observer.Notifications(), Strings{"disconnected cfnr"});
    EXPECT_TRUE(device.AwaitHostGone());
    Disconnect(silent);
    EXPECT_EQ(observer.Notifications().size(), 1U);
}

TEST(Connecting, EndsWithoutAFailureWhenTheDeviceIsLostMeanwhile) {
    ScriptedDevice device(DeviceScript{.greeting = deviceBlock});
    ConnectOutcome outcome{};
    std::thread host([&] { outcome = Connect(device.Address()); });
    EXPECT_FALSE(device.NextBlock().empty());

    device.HangUp();
    host.join();

    EXPECT_EQ(outcome.result, ok);
    EXPECT_EQ(outcome.reason, "cfnr");
    ASSERT_TRUE(outcome.device);
    EXPECT_EQ(outcome.device.Release(), 0U);
}

TEST(Connecting, WaitsForEveryBlock) {
    DeviceScript script = CompleteDevice();
    script.answers.erase("PRESET AVAILABILITY");
    ScriptedDevice device(script);
    ConnectionObserver observer;
    const RawObject connecting = ConnectAsync(device.Address(), observer);
    for (std::string block; block != "PRESET AVAILABILITY:\n\n";) {
        block = device.NextBlock();
        ASSERT_FALSE(block.empty());
    }
    WatchedDevice watched(device, connecting);
    watched.Report("");
    EXPECT_TRUE(observer.Notifications().empty());

    watched.Report("PRESET AVAILABILITY:\nPreset range: 1 6\n\n");

    EXPECT_TRUE(observer.AwaitCalls(1));
    EXPECT_EQ(observer.Notifications(), Strings{"connected"});
}

TEST(Connection, ReportsThatTheDeviceHungUp) {
    ScriptedDevice device(CompleteDevice());
    ConnectionObserver observer;
    const RawObject connected = ConnectAsync(device.Address(), observer);
    ASSERT_TRUE(observer.AwaitCalls(1));

    device.HangUp();

    ASSERT_TRUE(observer.AwaitCalls(2));
    EXPECT_EQ(observer.Notifications(), (Strings{"connected", "disconnected cfnr"}));
    EXPECT_EQ(DeviceName(connected), u"");
}

TEST(Connection, ReportsThatTheDeviceWasReset) {
    ScriptedDevice device(CompleteDevice());
    ConnectionObserver observer;
    const RawObject connected = ConnectAsync(device.Address(), observer);
    ASSERT_TRUE(observer.AwaitCalls(1));
    device.Send("VIDEO PROC AMP:\nGa");

    device.Reset();

    ASSERT_TRUE(observer.AwaitCalls(2));
    EXPECT_EQ(observer.Notifications(), (Strings{"connected", "disconnected cfnr"}));
}

TEST(Connection, KeepsALaterRemoteLockAsTheReason) {
    ScriptedDevice device(CompleteDevice());
    ConnectionObserver observer;
    const RawObject connected = ConnectAsync(device.Address(), observer);
    ASSERT_TRUE(observer.AwaitCalls(1));
    {
        WatchedDevice watched(device, connected);
        EXPECT_EQ(watched.Report("MORQUIL DEVICE:\nRemote lock: true\n\n"), "devc");
        EXPECT_EQ(watched.Report("VIDEO PROC AMP:\nGain: 7\n\n"), "vpap");
    }

    Disconnect(connected);

    EXPECT_EQ(observer.Notifications(), (Strings{"connected", "disconnected cfrm"}));
}

TEST(Connection, ServesTwoDevicesApart) {
    ScriptedDevice device(CompleteDevice());
    ScriptedDevice otherDevice(CompleteDevice());
    const ConnectOutcome outcome = Connect(device.Address());
    const ConnectOutcome other = Connect(otherDevice.Address());
    ASSERT_TRUE(outcome.device);
    ASSERT_TRUE(other.device);

    Disconnect(outcome.device);

    EXPECT_EQ(DeviceName(outcome.device), u"");
    EXPECT_EQ(DeviceName(other.device), u"Scripted");
    WatchedDevice watched(otherDevice, other.device);
    EXPECT_EQ(watched.Report("VIDEO PROC AMP:\nGain: 7\n\n"), "vpap");
}

TEST(Connection, UsesOneThread) {
    ScriptedDevice devices[]{ScriptedDevice(CompleteDevice()), ScriptedDevice(CompleteDevice()),
                             ScriptedDevice(CompleteDevice())};
    { const ConnectOutcome first = Connect(devices[0].Address()); }  // what the system itself starts exists now
    const std::size_t before = ThreadCount();

    std::vector<ConnectOutcome> outcomes;
    for (ScriptedDevice& device : devices) {
        outcomes.push_back(Connect(device.Address()));
    }

    EXPECT_EQ(ThreadCount(), before + outcomes.size());
}

TEST(Connection, IsClosedByTheLastRelease) {
    ScriptedDevice device(CompleteDevice());
    ConnectOutcome outcome = Connect(device.Address());
    ASSERT_TRUE(outcome.device);
    RawObject feature = outcome.device.QueryInterface(Iid::preset);
    EXPECT_EQ(outcome.device.Release(), 1U);

    EXPECT_EQ(feature.Release(), 0U);

    EXPECT_TRUE(device.AwaitHostGone());
}

}  // namespace
}  // namespace Morquil::Testing
