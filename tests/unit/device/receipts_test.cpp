// What receipts say about changes, with a device that a test plays.
#include <gtest/gtest.h>

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
    SetLineOffset(1);  // in flight, so the levels wait together
    ASSERT_TRUE(rig.link.AwaitIdle());
    const UINT64 receipt = Open(observer);
    SetGain(500);
    SetHue(3);
    Mark(receipt);
    rig.DeviceSends("ACK\n\nGENLOCK:\nLine offset: 1\n\n");
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

TEST_F(Receipt, OfWhatOnlyTheDeviceDetectsIsSettledByTheAnswer) {
    ConnectToDeviceThatAnswers("ACK\n\n");
    const TemporaryFolder folder;
    const OwnedBstr path(BstrFromUtf8(folder.Make("settings", "GENLOCK:\nSignal locked: true\n\n")));
    const UINT64 receipt = Open(observer);
    EXPECT_EQ(rig.device->LoadSettingsFile(path.Get()), S_FALSE);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 1 0"}));
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
