// How receipts end with their connection, in callbacks and when they are cancelled, with a device that a test plays.
#include <gtest/gtest.h>

#include <atomic>

#include "device/device.h"
#include "tests/kit/threads.h"
#include "tests/unit/device/delivery_rig.h"

namespace Morquil {
namespace {

using Morquil::Testing::Threads;
using namespace Testing;

class ReceiptEnd : public DeliveryTest {};

// ---- The end of the connection --------------------------------------------------------------------------------------

TEST_F(ReceiptEnd, IsLostBeforeItsChangeWasSent) {
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

TEST_F(ReceiptEnd, IsLostAfterItsChangeWasSent) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.link.Push(CommsEvent::SocketError);
    ASSERT_TRUE(observer->AwaitNotified("1: lost 0 0 1 0"));
    EXPECT_TRUE(observer->AwaitReferences(1));
}

TEST_F(ReceiptEnd, IsLostAfterTheAnswer) {
    ConnectToSilentDevice();
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    rig.DeviceSends("ACK\n\n");
    rig.link.Push(CommsEvent::SocketError);
    ASSERT_TRUE(observer->AwaitNotified(2));
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: lost 1 0 0 0"}));
}

TEST_F(ReceiptEnd, IsLostWithADisconnectBeforeThatReturns) {
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

TEST_F(ReceiptEnd, IsNotifiedOfNothingAfterTheLastRelease) {
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

TEST_F(ReceiptEnd, MayDisconnectInItsCallback) {
    ConnectToSilentDevice();
    const Held<ConnectionObserver> connection;
    const Held<ReceiptObserver> second;
    rig.device->AddConnectionObserver(connection.Get());
    observer->onCall = [&] { EXPECT_EQ(rig.device->Disconnect(), S_OK); };
    const UINT64 receipt = Open(observer);
    Open(second);
    SetGain(5);
    Mark(receipt);
    rig.link.Push("ACK\n\n");
    ASSERT_TRUE(connection->AwaitNotified("disconnected cfnr"));
    ASSERT_TRUE(rig.link.AwaitClosed());
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: lost 1 0 0 0"}));
    EXPECT_EQ(second->Notifications(), Texts{"2: lost 1 0 0 0"});
}

TEST_F(ReceiptEnd, MayReleaseTheLastReferenceInItsCallback) {
    Connect();
    observer->onCall = [&] { EXPECT_EQ(rig.Release(), 0U); };
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    EXPECT_TRUE(rig.link.AwaitDestroyed());
    EXPECT_EQ(observer->Notifications(), Texts{"1: answered 1 0 0"});
    EXPECT_TRUE(observer->AwaitReferences(1));
}

TEST_F(ReceiptEnd, MayOpenAnotherInItsCallback) {
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

TEST_F(ReceiptEnd, IsNotifiedOnTheConnectionThread) {
    Connect();
    const Held<PropertyObserver> property;
    rig.device->AddPropertyObserver(property.Get(), morquilReferencePropertySetId);
    rig.DeviceSends("GENLOCK:\nLine offset: 9\n\n");
    Mark(Open(observer));
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->LastThread(), property->LastThread());
}

// ---- Cancelling -----------------------------------------------------------------------------------------------------

TEST_F(ReceiptEnd, ThatIsCancelledIsNotifiedOfNothing) {
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

TEST_F(ReceiptEnd, IsCancelledAfterACallInProgress) {
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

TEST_F(ReceiptEnd, MayBeCancelledInItsCallback) {
    Connect();
    UINT64 receipt = 0;
    observer->onCall = [&] { EXPECT_EQ(Delivery()->CancelReceipt(receipt), S_OK); };
    receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(observer->Notifications(), Texts{"1: answered 1 0 0"});
}

}  // namespace
}  // namespace Morquil
