// Observers as lambdas.
#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "tests/system/cpp/connected.h"
#include "tests/system/cpp/said.h"

namespace Morquil::Testing {
namespace {

using morquil::PropertySet;

constexpr std::chrono::seconds patience{10};

TEST(CppObservers, AreNotifiedOfChangesThatTheDeviceReports) {
    Connected connected;
    Said<int> gain;
    const morquil::Subscription changes = connected.host.OnChange(PropertySet::VideoProcAmp, [&](PropertySet set) {
        EXPECT_EQ(set, PropertySet::VideoProcAmp);
        gain.Say(connected.host.VideoProcAmp().GetGain());
    });
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_EQ(gain.Await(), 7);
}

TEST(CppObservers, AreNotNotifiedAfterTheirSubscriptionHasEnded) {
    Connected connected;
    int calls = 0;
    Said<bool> later;
    morquil::Subscription first = connected.host.OnChange(PropertySet::VideoProcAmp, [&](PropertySet) { ++calls; });
    const morquil::Subscription second =
        connected.host.OnChange(PropertySet::NoiseReduction, [&](PropertySet) { later.Say(true); });
    first.Cancel();
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\nNOISE REDUCTION:\nBias: 1\n\n");
    EXPECT_TRUE(later.Await());
    EXPECT_EQ(calls, 0);
}

TEST(CppObservers, RunWhereTheHostWantsThemTo) {
    Connected connected;
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<std::function<void()>> queue;
    const morquil::Executor later = [&](std::function<void()> handler) {
        const std::lock_guard lock(mutex);
        queue.push_back(std::move(handler));
        arrived.notify_all();
    };
    std::optional<std::thread::id> ranOn;
    morquil::Subscription changes = connected.host.OnChange(
        PropertySet::VideoProcAmp, [&](PropertySet) { ranOn = std::this_thread::get_id(); }, later);
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    std::unique_lock lock(mutex);
    ASSERT_TRUE(arrived.wait_for(lock, patience, [&] { return !queue.empty(); }));
    EXPECT_EQ(ranOn, std::nullopt);
    queue[0]();
    EXPECT_EQ(ranOn, std::this_thread::get_id());

    // What is pending when the subscription ends no longer runs.
    ranOn.reset();
    changes.Cancel();
    queue[0]();
    EXPECT_EQ(ranOn, std::nullopt);
}

TEST(CppObservers, MayCancelThemselvesAndDisconnect) {
    Connected connected;
    Said<bool> done;
    morquil::Subscription changes;
    changes = connected.host.OnChange(PropertySet::VideoProcAmp, [&](PropertySet) {
        connected.host.Disconnect();
        changes.Cancel();
        done.Say(true);
    });
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_TRUE(done.Await());
    EXPECT_TRUE(connected.device.AwaitHostGone());
}

TEST(CppObservers, AreNotifiedOfTheEndOfTheConnection) {
    Connected connected;
    Said<morquil::ConnectFailure> ended;
    const morquil::Subscription events =
        connected.host.OnConnection({{}, [&](morquil::ConnectFailure reason) { ended.Say(reason); }});
    connected.device.HangUp();
    EXPECT_EQ(ended.Await(), morquil::ConnectFailure::NoResponse);
}

TEST(CppConnect, ReportsWhyItFailed) {
    ScriptedDevice locked({.greeting = "PROTOCOL PREAMBLE:\nVersion: 2.21\n\n"});
    try {
        morquil::Connect(locked.Address());
        FAIL() << "the version differs";
    } catch (const morquil::ConnectError& error) {
        EXPECT_EQ(error.Reason(), morquil::ConnectFailure::IncompatibleUpdateSupported);
        EXPECT_STREQ(error.what(),
                     "Discovery::Connect: the device's firmware speaks another version of the protocol, and "
                     "can be updated over the network");
    }
}

TEST(CppConnect, ContinuesInTheBackground) {
    ScriptedDevice device(CompleteDevice());
    Said<bool> connected;
    const morquil::Connecting connecting = morquil::ConnectAsync(device.Address(), {[&] { connected.Say(true); }, {}});
    EXPECT_TRUE(connected.Await());
    EXPECT_EQ(connecting.device.GetDeviceName(), "Scripted");
    connecting.device.Disconnect();
}

}  // namespace
}  // namespace Morquil::Testing
