// Hosts that release at awkward moments, also inside the library's calls.
#include <gtest/gtest.h>

#include <future>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/system/host/host.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {
namespace {

constexpr const char* change = "VIDEO PROC AMP:\nGain: 7\n\nVIDEO PROC AMP:\nGain: 8\n\n";

// A device to which the host connects with observers of both kinds. The host's only reference is in `object`.
class Lifetime : public testing::Test {
protected:
    void ConnectAndWatch() {
        object = Connect(device.Address()).device;
        ASSERT_TRUE(object);
        ASSERT_EQ(object.Call(Slot::addConnectionObserver, connection.Get()), ok);
        ASSERT_EQ(object.Call(Slot::addPropertyObserver, property.Get(), FourCharacters("vpap")), ok);
    }

    PropertyObserver property;
    ConnectionObserver connection;
    ScriptedDevice device{CompleteDevice()};
    RawObject object;
};

TEST_F(Lifetime, ReleaseRightAfterConnectAsyncStillReportsTheEnd) {
    ScriptedDevice silent(DeviceScript{.acknowledges = false});
    RawObject connecting = ConnectAsync(silent.Address(), connection);
    ASSERT_TRUE(silent.AwaitHost());

    connecting.Release();
    EXPECT_TRUE(connection.Notifications().empty());
    silent.HangUp();

    EXPECT_TRUE(connection.AwaitCalls(1));
    EXPECT_EQ(connection.Notifications(), Strings{"disconnected cfnr"});
}

TEST_F(Lifetime, ReleaseRightAfterConnectAsyncStillConnects) {
    ConnectAsync(device.Address(), connection).Release();

    EXPECT_TRUE(connection.AwaitCalls(1));
    EXPECT_EQ(connection.Notifications().front(), "connected");
    EXPECT_TRUE(device.AwaitHostGone());
}

TEST_F(Lifetime, ManyAttemptsCanBeReleasedAtOnce) {
    for (int count = 0; count < 20; ++count) {
        ScriptedDevice brief(CompleteDevice());
        ConnectionObserver observer;
        ConnectAsync(brief.Address(), observer).Release();
        EXPECT_TRUE(observer.AwaitCalls(1));
    }
}

TEST_F(Lifetime, LastReleaseInsideConnected) {
    std::promise<void> handedOver;
    connection.InCall([&](const std::string& notification) {
        if (notification == "connected") {
            handedOver.get_future().wait();
            EXPECT_EQ(object.Release(), 1U);  // held by the attempt
        }
    });
    object = ConnectAsync(device.Address(), connection);
    handedOver.set_value();

    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_TRUE(connection.AwaitRelease());
    EXPECT_EQ(connection.Notifications(), Strings{"connected"});
}

TEST_F(Lifetime, LastReleaseInsidePropertyChanged) {
    ConnectAndWatch();
    property.InCall([this](const std::string&) { EXPECT_EQ(object.Release(), 0U); });

    device.Send(change);

    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_TRUE(property.AwaitRelease());
    EXPECT_EQ(property.Notifications(), Strings{"vpap"});
}

TEST_F(Lifetime, LastReleaseInsideDisconnected) {
    ConnectAndWatch();
    connection.InCall([this](const std::string&) { EXPECT_EQ(object.Release(), 0U); });

    device.HangUp();

    EXPECT_TRUE(connection.AwaitRelease());
    EXPECT_EQ(connection.Notifications(), Strings{"disconnected cfnr"});
}

TEST_F(Lifetime, DisconnectInsidePropertyChangedDropsTheRest) {
    ConnectAndWatch();
    property.InCall([this](const std::string&) { Disconnect(object); });

    device.Send(change);

    ASSERT_TRUE(connection.AwaitCalls(1));
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_EQ(property.Notifications(), Strings{"vpap"});
    std::int32_t gain = 9;
    EXPECT_EQ(object.QueryInterface(Iid::videoProcAmp).Call(4, &gain), failed);
    EXPECT_EQ(gain, 9);
}

TEST_F(Lifetime, DisconnectInsideConnectedIsReportedAfterIt) {
    std::promise<void> handedOver;
    connection.InCall([&](const std::string& notification) {
        if (notification == "connected") {
            handedOver.get_future().wait();
            Disconnect(object);
        }
    });
    object = ConnectAsync(device.Address(), connection);
    handedOver.set_value();

    ASSERT_TRUE(connection.AwaitCalls(2));
    EXPECT_EQ(connection.Notifications(), (Strings{"connected", "disconnected cfnr"}));
    EXPECT_TRUE(device.AwaitHostGone());
}

TEST_F(Lifetime, DisconnectInsideDisconnectedDoesNothing) {
    ConnectAndWatch();
    connection.InCall([this](const std::string&) { Disconnect(object); });

    Disconnect(object);

    EXPECT_EQ(connection.Notifications(), Strings{"disconnected cfnr"});
}

TEST_F(Lifetime, DisconnectEndsAnAttemptBeforeItHasBegun) {
    for (int count = 0; count < 20; ++count) {
        ScriptedDevice brief(CompleteDevice());
        ConnectionObserver observer;
        const RawObject connecting = ConnectAsync(brief.Address(), observer);
        Disconnect(connecting);
        EXPECT_EQ(observer.Notifications().back(), "disconnected cfnr");
    }
}

TEST_F(Lifetime, ObserversRemoveThemselvesInsideTheirCalls) {
    ConnectAndWatch();
    property.InCall([this](const std::string&) {
        EXPECT_EQ(object.Call(Slot::removePropertyObserver, property.Get(), FourCharacters("vpap")), ok);
    });
    connection.InCall(
        [this](const std::string&) { EXPECT_EQ(object.Call(Slot::removeConnectionObserver, connection.Get()), ok); });

    device.Send(change);
    EXPECT_TRUE(property.AwaitRelease());
    Disconnect(object);

    EXPECT_EQ(property.Notifications(), Strings{"vpap"});
    EXPECT_EQ(connection.Notifications(), Strings{"disconnected cfnr"});
    EXPECT_TRUE(connection.AwaitRelease());
}

TEST_F(Lifetime, SettersAndGettersWorkInsideCalls) {
    ConnectAndWatch();
    std::int32_t gain = 0;
    property.InCall([&](const std::string&) {
        const RawObject amp = object.QueryInterface(Iid::videoProcAmp);
        EXPECT_EQ(amp.Call(4, &gain), ok);
        EXPECT_EQ(amp.Call(6, gain), ok);
    });

    device.Send("VIDEO PROC AMP:\nGain: 7\n\n");

    EXPECT_EQ(device.NextChange(), "VIDEO PROC AMP:\nBlack: 7\n\n");
    Disconnect(object);
    EXPECT_EQ(gain, 7);
}

}  // namespace
}  // namespace Morquil::Testing
