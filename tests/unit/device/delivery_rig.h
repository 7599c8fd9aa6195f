// A connected device whose changes a test follows.
#pragma once

#include "MorquilDelivery.h"
#include "tests/unit/device/device_rig.h"
#include "tests/unit/device/recording_observers.h"

namespace Morquil::Testing {

class DeliveryTest : public DeviceTest {
protected:
    void Connect(FakeConnection::Answer answer = DeviceAnswer) { rig.ConnectToGoodDevice(std::move(answer)); }
    /// Connects to a device that answers every change and every ping with `answer`.
    void ConnectToDeviceThatAnswers(const std::string& answer) {
        Connect([answer](const std::string& sent) {
            const std::string usual = DeviceAnswer(sent);
            return usual == "ACK\n\n" || usual == "ACK\n\n" + sent ? answer : usual;
        });
    }
    /// Connects to a device that answers neither changes nor pings: the test does.
    void ConnectToSilentDevice() { ConnectToDeviceThatAnswers({}); }

    IMorquilDelivery* Delivery() const { return rig.Feature<IMorquilDelivery>(IID_IMorquilDelivery); }
    UINT64 Open(const Held<ReceiptObserver>& receiver, _MorquilReceiptScope scope = morquilReceiptThisThread) {
        UINT64 receipt = 0;
        EXPECT_EQ(Delivery()->OpenReceipt(receiver.Get(), scope, &receipt), S_OK);
        return receipt;
    }
    void Mark(UINT64 receipt) { EXPECT_EQ(Delivery()->MarkReceipt(receipt), S_OK); }
    void SetGain(int gain) { EXPECT_EQ(rig.ProcAmp()->SetGain(gain), S_OK); }
    void SetHue(int hue) { EXPECT_EQ(rig.ProcAmp()->SetHue(hue), S_OK); }
    /// A block that waits in another slot, and is sent after the levels.
    void SetLineOffset(int offset) {
        EXPECT_EQ(rig.Feature<IMorquilReference>(IID_IMorquilReference)->SetLineOffset(offset), S_OK);
    }

    Held<ReceiptObserver> observer;
};

}  // namespace Morquil::Testing
