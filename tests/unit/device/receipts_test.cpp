// What receipts say about changes, with a device that a test plays.
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

#include "device/device.h"
#include "platform/text.h"
#include "tests/kit/temporary_folder.h"
#include "tests/kit/threads.h"
#include "tests/unit/device/delivery_rig.h"

namespace Morquil {
namespace {

using Morquil::Testing::Threads;
using namespace Testing;

class Receipt : public DeliveryTest {};

// ---- What the device answers ----------------------------------------------------------------------------------------

TEST_F(Receipt, IsAnsweredAndSettledByTheEcho) {
    Connect();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 1 0"}));
    EXPECT_EQ(rig.Gain(), 5);
}

TEST_F(Receipt, IsAnsweredBeforeItIsSettled) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_TRUE(observer->Notifications().empty());
    rig.DeviceSends("ACK\n\n");
    EXPECT_EQ(observer->TakeNotifications(), Texts{"1: answered 1 0 0"});
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{"1: settled 1 0"});
}

TEST_F(Receipt, CountsWhatTheDeviceRefuses) {
    Connect([](const std::string& sent) {
        return HeaderOf(sent) == "GENLOCK" ? "NACK\n\nGENLOCK:\nLine offset: 0\n\n" : DeviceAnswer(sent);
    });
    const UINT64 receipt = Open(observer);
    SetLineOffset(5);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 1 0", "1: settled 1 0"}));
}

TEST_F(Receipt, IsSettledAtOnceWhenEverythingWasRefused) {
    ConnectToDeviceThatAnswers("NACK\n\n");
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 0 1 0", "1: settled 0 0"}));
}

TEST_F(Receipt, CountsWhatTheDeviceHasAdjusted) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(500);
    SetHue(3);
    Mark(receipt);
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 100\nHue: 3\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 0 1"}));
    EXPECT_EQ(rig.Gain(), 100);
}

TEST_F(Receipt, IsNotSettledByAReportThatIsOlderThanTheChange) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 77\n\n");
    rig.DeviceSends("ACK\n\n");
    EXPECT_EQ(observer->TakeNotifications(), Texts{"1: answered 1 0 0"});
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{"1: settled 1 0"});
}

TEST_F(Receipt, IsNotSettledByAnotherKeyOrAnotherBlock) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nHue: 5\n\nGENLOCK:\nLine offset: 5\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{"1: answered 1 0 0"});
}

TEST_F(Receipt, AcceptsAnEchoThatComesBeforeTheAnswer) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\n\nACK\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 1 0"}));
}

TEST_F(Receipt, IsSettledWhenTheDeviceHasReportedEachValue) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    ASSERT_EQ(rig.ProcAmp()->SetGain(5), S_OK);
    ASSERT_TRUE(rig.link.AwaitIdle());
    SetGain(6);
    SetHue(7);
    Mark(receipt);
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 5\n\n");
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 6\n\n");
    EXPECT_EQ(observer->TakeNotifications(), Texts{"1: answered 2 0 0"});
    rig.DeviceSends("VIDEO PROC AMP:\nHue: 7\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{"1: settled 2 0"});
}

TEST_F(Receipt, OfACommandIsSettledByTheAnswer) {
    ConnectToDeviceThatAnswers("ACK\n\n");
    const UINT64 receipt = Open(observer);
    EXPECT_EQ(rig.Feature<IMorquilPreset>(IID_IMorquilPreset)->RecallPreset(1), S_OK);
    EXPECT_EQ(rig.ProcAmp()->ResetAll(), S_OK);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 2 0 0", "1: settled 2 0"}));
}

TEST_F(Receipt, ComparesNumbersAsTheyAreWritten) {
    Connect();
    const UINT64 receipt = Open(observer);
    IMorquilVideoClip* const clip = rig.Feature<IMorquilVideoClip>(IID_IMorquilVideoClip);
    EXPECT_EQ(clip->SetLumaLow(16), S_OK);
    EXPECT_EQ(rig.device->SetPanelLock(1), S_OK);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 2 0 0", "1: settled 2 0"}));
}

// ---- What a receipt covers ------------------------------------------------------------------------------------------

TEST_F(Receipt, WithoutAChangeIsAnsweredAndSettled) {
    Connect();
    Mark(Open(observer));
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 0 0 0", "1: settled 0 0"}));
    EXPECT_EQ(observer->References(), 1U);
}

TEST_F(Receipt, IsNotAnsweredBeforeItIsMarked) {
    Connect();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_TRUE(observer->Notifications().empty());
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 1 0"}));
}

TEST_F(Receipt, CoversOnlyWhatItsThreadHasQueuedWhileItWasOpen) {
    Connect();
    SetGain(1);
    ASSERT_TRUE(rig.link.AwaitIdle());
    const UINT64 receipt = Open(observer);
    {
        const Threads other(1, [&] { SetLineOffset(2); });
    }
    Mark(receipt);
    SetHue(3);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 0 0 0", "1: settled 0 0"}));
}

TEST_F(Receipt, MayCoverAllThreads) {
    Connect();
    const UINT64 receipt = Open(observer, morquilReceiptAllThreads);
    {
        const Threads other(1, [&] { SetLineOffset(2); });
    }
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 2 0 0", "1: settled 2 0"}));
}

TEST_F(Receipt, CountsChangesThatWaitTogetherOnce) {
    ConnectToSilentDevice();
    const Held<ReceiptObserver> second;
    SetLineOffset(1);  // in flight, so what follows waits
    ASSERT_TRUE(rig.link.AwaitIdle());
    const UINT64 first = Open(observer);
    SetGain(5);
    SetGain(6);
    Mark(first);
    const UINT64 other = Open(second);
    SetHue(7);
    Mark(other);
    rig.DeviceSends("ACK\n\nGENLOCK:\nLine offset: 1\n\n");
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 6\nHue: 7\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 1 0"}));
    EXPECT_EQ(second->Notifications(), (Texts{"2: answered 1 0 0", "2: settled 1 0"}));
    EXPECT_EQ(rig.SentSinceConnect(), (Texts{"GENLOCK:\nLine offset: 1\n\n", "VIDEO PROC AMP:\nGain: 6\nHue: 7\n\n"}));
}

TEST_F(Receipt, CountsTheAlignmentAsKept) {
    Connect();
    const TemporaryFolder folder;
    const OwnedBstr path(BstrFromUtf8(folder.Make("settings", "ALIGN:\nAlign trim X left: 1\n\n")));
    const UINT64 receipt = Open(observer);
    EXPECT_EQ(rig.device->LoadSettingsFile(path.Get()), S_FALSE);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 0 0 1", "1: settled 0 0"}));
}

TEST_F(Receipt, IsNotConfusedByTheAnswerToAPing) {
    ConnectToSilentDevice();
    rig.link.Push(CommsEvent::Timeout);
    ASSERT_TRUE(rig.link.AwaitIdle());
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(rig.SentSinceConnect(), (Texts{"PING\n\n", "VIDEO PROC AMP:\nGain: 5\n\n"}));
    rig.DeviceSends("ACK\n\n");
    EXPECT_TRUE(observer->Notifications().empty()) << "that was the answer to the ping";
    rig.DeviceSends("NACK\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 0 1 0", "1: settled 0 0"}));
}

TEST_F(Receipt, IsAnsweredByADeviceThatDoesNotAnswerPings) {
    ConnectToSilentDevice();
    rig.link.Push(CommsEvent::Timeout);
    ASSERT_TRUE(rig.link.AwaitIdle());
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 5\n\n");
    rig.link.Push(CommsEvent::Timeout);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 1 0"}));
}

TEST_F(Receipt, SupersededByALaterChangeIsAdjusted) {
    ConnectToSilentDevice();
    const Held<ReceiptObserver> second;
    const UINT64 first = Open(observer);
    SetGain(5);
    Mark(first);
    ASSERT_TRUE(rig.link.AwaitIdle());
    const UINT64 other = Open(second);
    SetGain(6);
    Mark(other);
    rig.DeviceSends("ACK\n\n");
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 6\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 0 1"}));
    EXPECT_EQ(second->Notifications(), (Texts{"2: answered 1 0 0", "2: settled 1 0"}));
}

TEST_F(Receipt, IsOneOfAThousandAtOnce) {
    ConnectToSilentDevice();
    SetLineOffset(1);
    ASSERT_TRUE(rig.link.AwaitIdle());
    std::vector<UINT64> receipts;
    for (int count = 0; count < 1000; ++count) {
        receipts.push_back(Open(observer));
        SetGain(count);
    }
    for (const UINT64 receipt : receipts) {
        Mark(receipt);
    }
    rig.DeviceSends("ACK\n\nGENLOCK:\nLine offset: 1\n\n");
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 999\n\n");
    EXPECT_EQ(observer->Notifications().size(), 2000U);
    EXPECT_TRUE(observer->AwaitNotified("1: settled 1 0"));
    EXPECT_TRUE(observer->AwaitNotified("1000: settled 1 0"));
    EXPECT_EQ(observer->References(), 1U);
}

TEST_F(Receipt, IsOpenedByManyThreadsAtOnce) {
    constexpr int threadCount = 8;
    constexpr int receiptsPerThread = 125;
    Connect();
    const auto openMany = [&] {
        for (int count = 0; count < receiptsPerThread; ++count) {
            const UINT64 receipt = Open(observer);
            SetGain(count);
            Mark(receipt);
        }
    };
    { const Threads threads(threadCount, openMany); }
    ASSERT_TRUE(observer->AwaitNotified(std::size_t{2} * threadCount * receiptsPerThread));
    EXPECT_TRUE(observer->AwaitReferences(1));
}

// ---- The end of the connection --------------------------------------------------------------------------------------

TEST_F(Receipt, IsLostBeforeItsChangeWasSent) {
    ConnectToSilentDevice();
    SetLineOffset(1);
    ASSERT_TRUE(rig.link.AwaitIdle());
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    rig.link.Push(CommsEvent::SocketError);
    ASSERT_TRUE(rig.link.AwaitClosed());
    EXPECT_TRUE(observer->AwaitNotified("1: lost 0 0 0 1"));
}

TEST_F(Receipt, IsLostAfterItsChangeWasSent) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.link.Push(CommsEvent::SocketError);
    ASSERT_TRUE(observer->AwaitNotified("1: lost 0 0 1 0"));
    EXPECT_TRUE(observer->AwaitReferences(1));
}

TEST_F(Receipt, IsLostAfterTheAnswer) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    rig.DeviceSends("ACK\n\n");
    rig.link.Push(CommsEvent::SocketError);
    ASSERT_TRUE(observer->AwaitNotified(2));
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: lost 1 0 0 0"}));
}

TEST_F(Receipt, IsLostWithADisconnectBeforeThatReturns) {
    ConnectToSilentDevice();
    const UINT64 marked = Open(observer);
    SetGain(5);
    Mark(marked);
    const UINT64 open = Open(observer);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_EQ(observer->Notifications(), (Texts{"1: lost 0 0 1 0", "2: lost 0 0 0 0"}));
    EXPECT_EQ(Delivery()->MarkReceipt(open), S_FALSE);
    EXPECT_EQ(observer->References(), 1U);
}

TEST_F(Receipt, IsNotifiedOfNothingAfterTheLastRelease) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(rig.Release(), 0U);
    EXPECT_TRUE(observer->Notifications().empty());
    EXPECT_EQ(observer->References(), 1U);
}

// ---- Inside a callback ----------------------------------------------------------------------------------------------

TEST_F(Receipt, MayDisconnectInItsCallback) {
    Connect();
    const Held<ConnectionObserver> connection;
    const Held<ReceiptObserver> second;
    rig.device->AddConnectionObserver(connection.Get());
    observer->onCall = [&] { EXPECT_EQ(rig.device->Disconnect(), S_OK); };
    const UINT64 receipt = Open(observer);
    Open(second);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(connection->AwaitNotified("disconnected cfnr"));
    ASSERT_TRUE(rig.link.AwaitClosed());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: lost 1 0 0 0"}));
    EXPECT_EQ(second->Notifications(), Texts{"2: lost 1 0 0 0"});
}

TEST_F(Receipt, MayReleaseTheLastReferenceInItsCallback) {
    Connect();
    observer->onCall = [&] { EXPECT_EQ(rig.Release(), 0U); };
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    EXPECT_TRUE(rig.link.AwaitDestroyed());
    EXPECT_EQ(observer->Notifications(), Texts{"1: answered 1 0 0"});
    EXPECT_TRUE(observer->AwaitReferences(1));
}

TEST_F(Receipt, MayOpenAnotherInItsCallback) {
    Connect();
    const Held<ReceiptObserver> second;
    observer->onCall = [&] {
        const UINT64 another = Open(second);
        SetHue(9);
        Mark(another);
        observer->onCall = nullptr;
    };
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(second->AwaitNotified("2: settled 1 0"));
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 1 0"}));
}

TEST_F(Receipt, IsNotifiedOnTheConnectionThread) {
    Connect();
    const Held<PropertyObserver> property;
    rig.device->AddPropertyObserver(property.Get(), morquilReferencePropertySetId);
    rig.DeviceSends("GENLOCK:\nLine offset: 9\n\n");
    Mark(Open(observer));
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->LastThread(), property->LastThread());
}

// ---- Cancelling -----------------------------------------------------------------------------------------------------

TEST_F(Receipt, ThatIsCancelledIsNotifiedOfNothing) {
    ConnectToSilentDevice();
    const UINT64 marked = Open(observer);
    const UINT64 open = Open(observer);
    SetGain(5);
    Mark(marked);
    EXPECT_EQ(Delivery()->CancelReceipt(marked), S_OK);
    EXPECT_EQ(Delivery()->CancelReceipt(open), S_OK);
    EXPECT_EQ(Delivery()->CancelReceipt(marked), S_FALSE);
    EXPECT_EQ(observer->References(), 1U);
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_TRUE(observer->Notifications().empty());
    EXPECT_EQ(rig.Gain(), 5) << "the change itself is not affected";
}

TEST_F(Receipt, IsCancelledAfterACallInProgress) {
    ConnectToSilentDevice();
    std::atomic<bool> mayEnd = false;
    std::atomic<bool> hasEnded = false;
    observer->onCall = [&] {
        EXPECT_TRUE(Monitor::Await([&] { return mayEnd.load(); }));
        hasEnded = true;
    };
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.link.Push("ACK\n\n");
    ASSERT_TRUE(observer->AwaitNotified(1));
    {
        const Threads cancelling(1, [&] {
            Delivery()->CancelReceipt(receipt);
            EXPECT_TRUE(hasEnded) << "it has waited";
        });
        const auto lock = Monitor::Enter();
        mayEnd = true;
        Monitor::Changed();
    }
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(observer->Notifications().size(), 1U) << "cancelled before it was settled";
}

TEST_F(Receipt, MayBeCancelledInItsCallback) {
    Connect();
    UINT64 receipt = 0;
    observer->onCall = [&] { EXPECT_EQ(Delivery()->CancelReceipt(receipt), S_OK); };
    receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), Texts{"1: answered 1 0 0"});
}

// ---- Bad input ------------------------------------------------------------------------------------------------------

TEST_F(Receipt, IsNotOpenedForBadInput) {
    UINT64 receipt = 7;
    EXPECT_EQ(Delivery()->OpenReceipt(observer.Get(), morquilReceiptThisThread, &receipt), E_FAIL) << "not connected";
    Connect();
    EXPECT_EQ(Delivery()->OpenReceipt(nullptr, morquilReceiptThisThread, &receipt), E_POINTER);
    EXPECT_EQ(Delivery()->OpenReceipt(observer.Get(), morquilReceiptThisThread, nullptr), E_POINTER);
    EXPECT_EQ(Delivery()->OpenReceipt(observer.Get(), static_cast<_MorquilReceiptScope>(2), &receipt), E_INVALIDARG);
    EXPECT_EQ(Delivery()->OpenReceipt(observer.Get(), static_cast<_MorquilReceiptScope>(-1), &receipt), E_INVALIDARG);
    EXPECT_EQ(receipt, 7U);
    EXPECT_EQ(Delivery()->MarkReceipt(0), S_FALSE);
    EXPECT_EQ(Delivery()->MarkReceipt(1), S_FALSE);
    EXPECT_EQ(Delivery()->CancelReceipt(1), S_FALSE);
    rig.device->Disconnect();
    EXPECT_EQ(Delivery()->OpenReceipt(observer.Get(), morquilReceiptThisThread, &receipt), E_FAIL);
    EXPECT_EQ(observer->References(), 1U);
}

TEST_F(Receipt, IsMarkedOnce) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    EXPECT_EQ(Delivery()->MarkReceipt(receipt), S_FALSE);
}

}  // namespace
}  // namespace Morquil
