// How a device object connects, what ends an attempt, and what ends a connection.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "device/device.h"
#include "tests/kit/monitor.h"
#include "tests/kit/threads.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using Morquil::Testing::Threads;
using QRN::Core::CurrentThreadId;
using namespace Testing;

class Connection : public DeviceTest {
protected:
    /// The attempt has failed for `reason`, and nothing is left of it.
    void ExpectFailure(HRESULT result, _MorquilConnectToFailure reason) {
        EXPECT_EQ(result, E_FAIL);
        EXPECT_EQ(FourCharacters(rig.failReason), FourCharacters(reason));
        EXPECT_FALSE(rig.link.IsOpen());
        EXPECT_FALSE(rig.KnowsDevice());
    }

    Held<ConnectionObserver> observer;
};

// ---- Success --------------------------------------------------------------------------------------------------------

TEST_F(Connection, IsEstablishedWhenTheWholeStateHasArrived) {
    rig.link.AnswerWith(DeviceAnswer);
    rig.link.Push(GreetingText());
    EXPECT_EQ(rig.Connect(), S_OK);
    EXPECT_EQ(rig.failReason, morquilConnectToFailureNoResponse) << "hosts know success by this value";
    EXPECT_TRUE(rig.link.IsOpen());
    EXPECT_TRUE(rig.KnowsDevice());
    EXPECT_EQ(rig.Gain(), 0);
}

TEST_F(Connection, GoesToThePortOfTheProtocol) {
    rig.ConnectToGoodDevice();
    ASSERT_EQ(rig.link.Openings().size(), 1U);
    EXPECT_EQ(rig.link.Openings()[0].host, "device.test");
    EXPECT_EQ(rig.link.Openings()[0].port, 9800U);
}

TEST(ConnectionAddress, IsUtf8ForTheTransport) {
    const Watchdog watchdog;
    DeviceRig rig;
    rig.link.RefuseOpen();
    const OwnedBstr address{Utf16{OLESTR("ger\u00E4t.test")}};
    EXPECT_EQ(rig.device->Connect(address.Get(), nullptr, &rig.failReason), E_FAIL);
    EXPECT_EQ(rig.link.Openings()[0].host, "ger\xC3\xA4t.test");
}

TEST_F(Connection, PrintsWhereItConnectsAndThatItHas) {
    rig.link.Push(CompleteText());
    testing::internal::CaptureStdout();
    EXPECT_EQ(rig.Connect(), S_OK);
    const std::string output = testing::internal::GetCapturedStdout();
    EXPECT_EQ(output.find("Connecting to device.test\n"), 0U) << output;
    EXPECT_NE(output.find("\nconnected\n"), std::string::npos) << output;
}

TEST_F(Connection, RefusesACallWithoutAPlaceForTheReason) {
    EXPECT_EQ(rig.device->Connect(rig.address.Get(), nullptr, nullptr), E_INVALIDARG);
    EXPECT_TRUE(rig.link.Openings().empty());
}

TEST_F(Connection, ReturnsAtOnceToACallerWithAnObserver) {
    rig.link.BlockOpen();
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    EXPECT_EQ(rig.failReason, morquilConnectToFailureNoFailure);
    EXPECT_TRUE(rig.link.AwaitBlockedOpen());
    rig.device->Disconnect();
}

TEST_F(Connection, NotifiesTheObserverThatItIsEstablishedAndWritesNothingElseToTheHost) {
    rig.ConnectAsyncToGoodDevice(observer.Get());
    EXPECT_EQ(observer->Notifications(), Texts{"connected"});
    EXPECT_NE(observer->LastThread(), CurrentThreadId());
    EXPECT_EQ(rig.failReason, morquilConnectToFailureNoFailure);
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_FALSE) << "it was registered already";
}

TEST_F(Connection, NotifiesTheObserverOfASynchronousHostOnItsOwnThread) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    rig.ConnectToGoodDevice();
    EXPECT_EQ(observer->Notifications(), Texts{"connected"});
    EXPECT_EQ(observer->LastThread(), CurrentThreadId());
}

// ---- Failure --------------------------------------------------------------------------------------------------------

TEST_F(Connection, FailsWhenNothingListens) {
    rig.link.RefuseOpen();
    ExpectFailure(rig.Connect(), morquilConnectToFailureNoResponse);
}

TEST_F(Connection, FailsWhenItIsNotEstablishedInTime) {
    rig.link.RefuseConnect();
    ExpectFailure(rig.Connect(), morquilConnectToFailureNoResponse);
}

TEST_F(Connection, NotifiesTheObserverThatNothingListens) {
    rig.link.RefuseOpen();
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    EXPECT_TRUE(observer->AwaitNotified("disconnected cfnr"));
    EXPECT_EQ(observer->Notifications().size(), 1U);
}

class BadVersion : public Connection, public testing::WithParamInterface<std::pair<const char*, int>> {};

TEST_P(BadVersion, FailsAtOnceWithItsReason) {
    const auto& [version, reason] = GetParam();
    rig.link.AnswerWith(DeviceAnswer);
    rig.link.Push("PROTOCOL PREAMBLE:\nVersion: " + std::string(version) + "\n\n");
    ExpectFailure(rig.Connect(), static_cast<_MorquilConnectToFailure>(reason));
}

TEST_P(BadVersion, FailsWithItsReasonThoughTheDeviceHangsUp) {
    const auto& [version, reason] = GetParam();
    rig.link.Push("PROTOCOL PREAMBLE:\nVersion: " + std::string(version) + "\n\n");
    rig.link.PushReceiveResult(0);
    ExpectFailure(rig.Connect(), static_cast<_MorquilConnectToFailure>(reason));
}

TEST_P(BadVersion, NotifiesTheObserverOfItsReason) {
    const auto& [version, reason] = GetParam();
    rig.link.Push("PROTOCOL PREAMBLE:\nVersion: " + std::string(version) + "\n\n");
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    EXPECT_TRUE(observer->AwaitNotified(1));
    EXPECT_EQ(observer->Notifications(), Texts{"disconnected " + FourCharacters(reason)});
}

INSTANTIATE_TEST_SUITE_P(Connection, BadVersion,
                         testing::Values(std::pair{"0.21", morquilConnectToFailureIncompatibleFirmware},
                                         std::pair{"1.21", morquilConnectToFailureIncompatibleFirmware},
                                         std::pair{"4.21", morquilConnectToFailureIncompatibleFirmware},
                                         std::pair{"1.23", morquilConnectToFailureIncompatibleFirmware},
                                         std::pair{"2.21", morquilConnectToFailureIncompatibleUpdateSupported},
                                         std::pair{"3.0", morquilConnectToFailureIncompatibleUpdateSupported},
                                         std::pair{"7.23", morquilConnectToFailureIncompatibleUpdateSupported}));

TEST_F(Connection, FailsThoughACompleteStateFollowsABadVersion) {
    rig.link.Push("PROTOCOL PREAMBLE:\nVersion: 1.21\n\n" + CompleteText());
    ExpectFailure(rig.Connect(), morquilConnectToFailureIncompatibleFirmware);
}

TEST_F(Connection, FailsAtOnceOnADeviceThatIsLockedForRemoteControl) {
    rig.link.AnswerWith(DeviceAnswer);
    rig.link.Push(std::string(preambleText) + "MORQUIL DEVICE:\nModel name: x\nRemote lock: true\n\n");
    ExpectFailure(rig.Connect(), morquilConnectToFailureRemoteLock);
}

TEST_F(Connection, FailsOnALockedDeviceThatHangsUp) {
    rig.link.Push("MORQUIL DEVICE:\nRemote lock: true\n\n");
    rig.link.Push(CommsEvent::SocketError);
    ExpectFailure(rig.Connect(), morquilConnectToFailureRemoteLock);
}

TEST(ConnectionWait, EndsWithoutAnAnswer) {
    const Watchdog watchdog;
    DeviceRig rig(30'000);
    EXPECT_EQ(rig.Connect(), E_FAIL);
    EXPECT_EQ(rig.failReason, morquilConnectToFailureNoResponse);
    EXPECT_FALSE(rig.link.IsOpen());
}

TEST(ConnectionWait, EndsOnAnIncompleteState) {
    const Watchdog watchdog;
    DeviceRig rig(30'000);
    const Held<ConnectionObserver> observer;
    rig.link.AnswerWith([](const std::string&) { return "ACK\n\n"; });
    rig.link.Push(GreetingText());
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    EXPECT_TRUE(observer->AwaitNotified(1));
    EXPECT_EQ(observer->Notifications(), Texts{"disconnected cfnr"});
    EXPECT_FALSE(rig.KnowsDevice());
}

TEST_F(Connection, APlainLossWhileConnectingReturnsADisconnectedDevice) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    rig.link.Push(std::string(preambleText) + std::string(deviceText));
    rig.link.PushReceiveResult(0);
    EXPECT_EQ(rig.Connect(), S_OK);
    EXPECT_EQ(rig.failReason, morquilConnectToFailureNoResponse);
    EXPECT_TRUE(observer->AwaitNotified(1));
    EXPECT_EQ(observer->Notifications(), Texts{"disconnected cfnr"});
    EXPECT_FALSE(rig.KnowsDevice());
    EXPECT_FALSE(rig.link.IsOpen());
}

// ---- The end of a connection ----------------------------------------------------------------------------------------

TEST_F(Connection, ClearsTheMirrorAndNotifiesOnceWhenItIsDisconnected) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    rig.ConnectToGoodDevice();
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_EQ(observer->Notifications(), (Texts{"connected", "disconnected cfnr"}));
    EXPECT_FALSE(rig.KnowsDevice());
    EXPECT_EQ(rig.Gain(), -999);
    LONG supported = 2;
    EXPECT_EQ(rig.device->IsConversionSupported(morquilAPIVideoMode1080i50, morquilAPIVideoMode720p50,
                                                morquilAPIAspectRatioAnamorphic, &supported),
              S_OK);
    EXPECT_EQ(supported, 0);
    EXPECT_FALSE(rig.link.IsOpen());
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_EQ(observer->Notifications().size(), 2U);
}

TEST_F(Connection, IsNotEndedWhereThereIsNone) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_TRUE(observer->Notifications().empty());
}

class Loss : public Connection, public testing::WithParamInterface<std::function<void(FakeConnection&)>> {};

TEST_P(Loss, IsNotifiedOnceAndClearsTheMirror) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    rig.ConnectToGoodDevice();
    GetParam()(rig.link);
    EXPECT_TRUE(observer->AwaitNotified(2));
    EXPECT_EQ(observer->Notifications(), (Texts{"connected", "disconnected cfnr"}));
    EXPECT_FALSE(rig.KnowsDevice());
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_EQ(observer->Notifications().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Connection, Loss,
                         testing::Values([](FakeConnection& link) { link.PushReceiveResult(0); },
                                         [](FakeConnection& link) { link.PushReceiveResult(commsFailed); },
                                         [](FakeConnection& link) { link.Push(CommsEvent::SocketError); },
                                         [](FakeConnection& link) {
                                             link.Push("GENLOCK:\nLine off");
                                             link.PushReceiveResult(0);
                                         }));

TEST_F(Connection, NotifiesItsLossAfterTheConnectedCallHasReturned) {
    observer->onCall = [&, lost = false]() mutable {
        if (!std::exchange(lost, true)) {
            rig.link.Push(CommsEvent::SocketError);
            EXPECT_TRUE(rig.link.AwaitClosed());
        }
    };
    rig.link.Push(CompleteText());
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    EXPECT_TRUE(observer->AwaitNotified(2));
    EXPECT_EQ(observer->Notifications(), (Texts{"connected", "disconnected cfnr"}));
}

TEST(ConnectionThatIsLostAtOnce, NotifiesBothOrTheLossAlone) {
    for (int round = 0; round < 100; ++round) {
        const Watchdog watchdog;
        const Held<ConnectionObserver> observer;
        DeviceRig rig;
        rig.link.Push(CompleteText());
        rig.link.Push(CommsEvent::SocketError);
        EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
        EXPECT_TRUE(observer->AwaitNotified("disconnected cfnr"));
        const Texts notifications = observer->Notifications();
        EXPECT_TRUE(notifications == (Texts{"connected", "disconnected cfnr"}) ||
                    notifications == Texts{"disconnected cfnr"});
    }
}

TEST_F(Connection, StaysWhenTheDeviceIsLockedLaterButNamesThatAsTheReasonOfItsEnd) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    rig.ConnectToGoodDevice();
    rig.DeviceSends("MORQUIL DEVICE:\nRemote lock: true\n\n");
    EXPECT_TRUE(rig.link.IsOpen());
    LONG lock = 0;
    EXPECT_EQ(rig.device->GetRemoteLock(&lock), S_OK);
    EXPECT_EQ(lock, 1);
    rig.device->Disconnect();
    EXPECT_EQ(observer->Notifications(), (Texts{"connected", "disconnected cfrm"}));
}

TEST_F(Connection, EndsWhenTheDeviceDoesNotAcknowledge) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    rig.ConnectToGoodDevice(
        [](const std::string& sent) { return sent.find("VIDEO PROC AMP:") == 0 ? std::string() : DeviceAnswer(sent); });
    EXPECT_EQ(rig.ProcAmp()->SetGain(5), S_OK);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.link.Push(CommsEvent::Timeout);
    EXPECT_TRUE(observer->AwaitNotified("disconnected cfnr"));
}

TEST_F(Connection, IsKeptAliveThroughSilence) {
    rig.ConnectToGoodDevice();
    rig.link.Push(CommsEvent::Timeout);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(rig.SentSinceConnect(), Texts{"PING\n\n"});
    EXPECT_TRUE(rig.link.IsOpen());
}

// ---- Disconnect while connecting ------------------------------------------------------------------------------------

TEST_F(Connection, AnAttemptIsEndedWhileTheTransportConnects) {
    rig.link.BlockOpen();
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    ASSERT_TRUE(rig.link.AwaitBlockedOpen());
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_EQ(observer->Notifications(), Texts{"disconnected cfnr"});
    EXPECT_FALSE(rig.link.IsOpen());
}

TEST_F(Connection, AnAttemptIsEndedWhileItWaitsForTheState) {
    rig.link.Push(std::string(deviceText));
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    ASSERT_TRUE(rig.link.AwaitSends(1));
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_EQ(observer->Notifications(), Texts{"disconnected cfnr"});
    EXPECT_FALSE(rig.KnowsDevice());
}

TEST_F(Connection, ASynchronousAttemptThatIsEndedElsewhereReturnsADisconnectedDevice) {
    HRESULT result = E_UNEXPECTED;
    rig.link.Push(std::string(deviceText));
    {
        const Threads connecting(1, [&] { result = rig.Connect(); });
        ASSERT_TRUE(rig.link.AwaitSends(1));
        EXPECT_EQ(rig.device->Disconnect(), S_OK);
    }
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(rig.failReason, morquilConnectToFailureNoResponse);
    EXPECT_FALSE(rig.KnowsDevice());
}

TEST_F(Connection, IsEndedBySeveralThreadsAtOnceAndNotifiedOnce) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    rig.ConnectToGoodDevice();
    {
        const Threads disconnecting(4, [&] { EXPECT_EQ(rig.device->Disconnect(), S_OK); });
    }
    EXPECT_EQ(observer->Notifications(), (Texts{"connected", "disconnected cfnr"}));
}

TEST_F(Connection, IsEndedThoughTheDeviceDoesNotRead) {
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    rig.ConnectToGoodDevice();
    rig.link.BlockSends(-1);
    EXPECT_EQ(rig.ProcAmp()->SetGain(5), S_OK);
    ASSERT_TRUE(rig.link.AwaitBlockedSends(1));
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_EQ(observer->Notifications(), (Texts{"connected", "disconnected cfnr"}));
}

// ---- Observers ------------------------------------------------------------------------------------------------------

TEST_F(Connection, AddsAndRemovesAnObserverOnce) {
    EXPECT_EQ(rig.device->RemoveConnectionObserver(observer.Get()), S_FALSE);
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_OK);
    EXPECT_EQ(rig.device->AddConnectionObserver(observer.Get()), S_FALSE);
    EXPECT_EQ(observer->References(), 2U);
    EXPECT_EQ(rig.device->RemoveConnectionObserver(observer.Get()), S_OK);
    EXPECT_EQ(rig.device->RemoveConnectionObserver(observer.Get()), S_FALSE);
    EXPECT_EQ(observer->References(), 1U);
    rig.ConnectToGoodDevice();
    EXPECT_TRUE(observer->Notifications().empty());
}

}  // namespace
}  // namespace Morquil
