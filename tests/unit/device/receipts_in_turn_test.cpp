// Receipts that follow one another, and observers that act at the end of theirs.
#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "device/device.h"
#include "platform/text.h"
#include "tests/kit/temporary_folder.h"
#include "tests/unit/device/delivery_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

/// Cancels its receipt when it is destroyed, as an object that owns a receipt does.
class CancellingObserver final : public IMorquilReceiptObserver {
public:
    CancellingObserver(IMorquilDelivery& delivery, std::atomic<bool>& isDestroyed)
        : delivery_(delivery), isDestroyed_(isDestroyed) {}

    STDMETHODIMP QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG remaining = --references_;
        if (remaining == 0) {
            delete this;
        }
        return remaining;
    }
    STDMETHODIMP Answered(UINT64, UINT, UINT, UINT) override { return S_OK; }
    STDMETHODIMP Settled(UINT64, UINT, UINT) override { return S_OK; }
    STDMETHODIMP Lost(UINT64, UINT, UINT, UINT, UINT) override { return S_OK; }

    UINT64 receipt = 0;

private:
    ~CancellingObserver() {
        EXPECT_EQ(delivery_.CancelReceipt(receipt), S_FALSE) << "it has ended";
        const auto lock = Monitor::Enter();
        isDestroyed_ = true;
        Monitor::Changed();
    }

    IMorquilDelivery& delivery_;
    std::atomic<bool>& isDestroyed_;
    std::atomic<ULONG> references_ = 1;
};

class ReceiptInTurn : public DeliveryTest {
protected:
    void LoadAlignment() {
        const OwnedBstr path(BstrFromUtf8(folder_.Make("settings", "ALIGN:\nAlign trim X left: 1\n\n")));
        EXPECT_EQ(rig.device->LoadSettingsFile(path.Get()), S_FALSE);
    }

private:
    const TemporaryFolder folder_;
};

TEST_F(ReceiptInTurn, IsSettledAfterACancelledOneForTheSameValue) {
    ConnectToSilentDevice();
    const UINT64 cancelled = Open(observer);
    SetGain(5);
    Mark(cancelled);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(Delivery()->CancelReceipt(cancelled), S_OK);
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 5\n\n");
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"2: answered 1 0 0", "2: settled 1 0"}));
}

TEST_F(ReceiptInTurn, OutlivesACancelledOneForTheSameMessage) {
    ConnectToSilentDevice();
    const UINT64 cancelled = Open(observer);
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    EXPECT_EQ(Delivery()->CancelReceipt(cancelled), S_OK);
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"2: answered 1 0 0", "2: settled 1 0"}));
}

TEST_F(ReceiptInTurn, MayBeCancelledWhenItsObserverIsDestroyed) {
    Connect();
    std::atomic<bool> isDestroyed = false;
    auto* const owner = new CancellingObserver(*Delivery(), isDestroyed);
    ASSERT_EQ(Delivery()->OpenReceipt(owner, morquilReceiptThisThread, &owner->receipt), S_OK);
    Mark(owner->receipt);
    owner->Release();
    EXPECT_TRUE(Monitor::Await([&] { return isDestroyed.load(); }));
}

TEST_F(ReceiptInTurn, ThatIsOpenedInEachCallbackDoesNotHoldUpADisconnect) {
    Connect();
    observer->onCall = [&] {
        UINT64 next = 0;
        if (Delivery()->OpenReceipt(observer.Get(), morquilReceiptThisThread, &next) == S_OK) {
            Delivery()->MarkReceipt(next);
        }
    };
    Mark(Open(observer));
    ASSERT_TRUE(observer->AwaitNotified(10));
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    observer->onCall = nullptr;
}

TEST_F(ReceiptInTurn, IsNotCancelledByASecondMarkThatCannotWakeTheConnection) {
    ConnectToSilentDevice();
    const Held<ReceiptObserver> other;
    const UINT64 receipt = Open(observer);
    SetGain(5);
    Mark(receipt);
    ASSERT_TRUE(rig.link.AwaitIdle());
    const UINT64 open = Open(observer);
    SetHue(7);
    other->onCall = [&] {  // and its second notification is due
        rig.link.RefuseSignals();
        EXPECT_EQ(Delivery()->MarkReceipt(receipt), S_FALSE);
        EXPECT_EQ(Delivery()->MarkReceipt(open), S_OK) << "it waits for the device";
        rig.link.AllowSignals();
        other->onCall = nullptr;
    };
    Mark(Open(other));
    ASSERT_TRUE(other->AwaitNotified(2));
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 5\n\n");
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nHue: 7\n\n");
    EXPECT_EQ(observer->Notifications(),
              (Texts{"1: answered 1 0 0", "1: settled 1 0", "2: answered 1 0 0", "2: settled 1 0"}));
}

TEST_F(ReceiptInTurn, IsCancelledByAMarkThatCannotWakeTheConnection) {
    Connect();
    const UINT64 receipt = Open(observer);
    rig.link.RefuseSignals();
    EXPECT_EQ(Delivery()->MarkReceipt(receipt), E_FAIL);
    rig.link.AllowSignals();
    EXPECT_EQ(Delivery()->CancelReceipt(receipt), S_FALSE);
    EXPECT_TRUE(observer->Notifications().empty());
    EXPECT_EQ(observer->References(), 1U);
}

TEST_F(ReceiptInTurn, CountsTheAlignmentOnceHoweverManyWereOpen) {
    Connect();
    for (int count = 0; count < 3; ++count) {
        const UINT64 receipt = Open(observer);
        LoadAlignment();
        LoadAlignment();
        Mark(receipt);
        ASSERT_TRUE(rig.link.AwaitIdle());
    }
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 0 0 1", "1: settled 0 0", "2: answered 0 0 1",
                                                "2: settled 0 0", "3: answered 0 0 1", "3: settled 0 0"}));
}

}  // namespace
}  // namespace Morquil
