// A host that disconnects inside a callback gets no further notifications, and the mirror stays empty.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "device/device.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

class DisconnectInACallback : public DeviceTest {
protected:
    void Disconnect() {
        EXPECT_EQ(rig.device->Disconnect(), S_OK);
        EXPECT_EQ(connectionObserver->Notifications(), (Texts{"connected", "disconnected cfnr"}))
            << "notified before it returns";
    }
    void ConnectAndObserve() {
        rig.device->AddConnectionObserver(connectionObserver.Get());
        rig.ConnectToGoodDevice();
    }
    void Observe(const Held<PropertyObserver>& observer, _MorquilPropertySetId set) {
        ASSERT_EQ(rig.device->AddPropertyObserver(observer.Get(), set), S_OK);
    }
    /// The connection thread has processed everything that had arrived.
    void AwaitEnd() { EXPECT_TRUE(rig.link.AwaitClosed()); }

    Held<ConnectionObserver> connectionObserver;
    Held<PropertyObserver> first;
    Held<PropertyObserver> second;
};

TEST_F(DisconnectInACallback, DropsTheRestOfWhatHasArrived) {
    ConnectAndObserve();
    Observe(first, morquilVideoProcAmpPropertySetId);
    Observe(second, morquilDeviceControlPropertySetId);
    first->onCall = [&] { Disconnect(); };
    rig.link.Push("VIDEO PROC AMP:\nGain: 1\n\n" + CompleteText() + "VIDEO PROC AMP:\nGain: 2\n\n" +
                  "MORQUIL DEVICE:\nModel name: Another\n\n");
    rig.link.Push("VIDEO PROC AMP:\nGain: 3\n\n");
    AwaitEnd();
    EXPECT_EQ(first->Notifications(), Texts{"vpap"});
    EXPECT_TRUE(second->Notifications().empty());
    EXPECT_EQ(connectionObserver->Notifications(), (Texts{"connected", "disconnected cfnr"}));
    EXPECT_EQ(rig.Gain(), -999);
    EXPECT_FALSE(rig.KnowsDevice());
}

TEST_F(DisconnectInACallback, DropsTheRestOfASharedBlock) {
    ConnectAndObserve();
    Observe(first, morquilColorCorrectionPropertySetId);
    Observe(second, morquilVideoClipPropertySetId);
    Observe(second, morquilAspectFillPropertySetId);
    first->onCall = [&] { Disconnect(); };
    rig.link.Push("VIDEO ADJUST:\nRed: 5\nLuma low: 5\nAspect fill luma: 65\n\n");
    AwaitEnd();
    EXPECT_TRUE(second->Notifications().empty());
    unsigned level = 0;
    EXPECT_EQ(rig.Feature<IMorquilVideoClip>(IID_IMorquilVideoClip)->GetLumaLow(&level), E_FAIL);
    EXPECT_EQ(rig.Feature<IMorquilAspectFill>(IID_IMorquilAspectFill)->GetLuma(&level), E_FAIL);
}

TEST_F(DisconnectInACallback, DropsTheRestOfASharedAvailabilityBlock) {
    ConnectAndObserve();
    Observe(first, morquilTimecodePropertySetId);
    Observe(second, morquilClosedCaptionPropertySetId);
    first->onCall = [&] { Disconnect(); };
    rig.link.Push("ANCILLARY DATA AVAILABILITY:\nTimecode modes: Off\nCC output line range: 1 2\n\n");
    AwaitEnd();
    EXPECT_EQ(first->Notifications(), Texts{"time"});
    EXPECT_TRUE(second->Notifications().empty());
    unsigned min = 0;
    unsigned max = 0;
    EXPECT_EQ(rig.Feature<IMorquilClosedCaption>(IID_IMorquilClosedCaption)->GetOutputLineRange(&min, &max), E_FAIL);
}

TEST_F(DisconnectInACallback, EndsTheRoundThatItIsIn) {
    ConnectAndObserve();
    Observe(first, morquilVideoProcAmpPropertySetId);
    Observe(second, morquilVideoProcAmpPropertySetId);
    first->onCall = [&] { Disconnect(); };
    rig.link.Push("VIDEO PROC AMP:\nGain: 1\n\n");
    AwaitEnd();
    EXPECT_TRUE(second->Notifications().empty());
}

TEST_F(DisconnectInACallback, OfTheDevicesOwnSet) {
    ConnectAndObserve();
    Observe(first, morquilDeviceControlPropertySetId);
    first->onCall = [&] { Disconnect(); };
    rig.link.Push("MORQUIL DEVICE:\nModel name: Another\nRemote lock: false\n\nVIDEO PROC AMP:\nGain: 1\n\n");
    AwaitEnd();
    EXPECT_FALSE(rig.KnowsDevice());
    EXPECT_EQ(rig.Gain(), -999);
}

TEST_F(DisconnectInACallback, OfTheOutputSet) {
    ConnectAndObserve();
    Observe(first, morquilOutputConfigurationPropertySetId);
    first->onCall = [&] { Disconnect(); };
    rig.link.Push("VIDEO OUTPUT:\nTransition setting: 20\n\nVIDEO PROC AMP:\nGain: 1\n\n");
    AwaitEnd();
    EXPECT_EQ(rig.Gain(), -999);
}

TEST_F(DisconnectInACallback, WhileConnectingEndsTheAttempt) {
    Observe(first, morquilDeviceControlPropertySetId);
    first->onCall = [&] { EXPECT_EQ(rig.device->Disconnect(), S_OK); };
    rig.link.Push(CompleteText());
    EXPECT_EQ(rig.ConnectAsync(connectionObserver.Get()), S_FALSE);
    EXPECT_TRUE(connectionObserver->AwaitNotified(1));
    AwaitEnd();
    EXPECT_EQ(connectionObserver->Notifications(), Texts{"disconnected cfnr"});
    EXPECT_FALSE(rig.KnowsDevice());
}

TEST_F(DisconnectInACallback, OfConnectedNotifiesNoOtherObserver) {
    const Held<ConnectionObserver> later;
    connectionObserver->onCall = [&, done = false]() mutable {
        if (!std::exchange(done, true)) {
            EXPECT_EQ(rig.device->Disconnect(), S_OK);
        }
    };
    rig.device->AddConnectionObserver(connectionObserver.Get());
    rig.device->AddConnectionObserver(later.Get());
    rig.link.Push(CompleteText());
    EXPECT_EQ(rig.Connect(), S_OK);
    EXPECT_EQ(connectionObserver->Notifications(), (Texts{"connected", "disconnected cfnr"}));
    EXPECT_EQ(later->Notifications(), Texts{"disconnected cfnr"});
}

TEST(DisconnectInACallbackAndElsewhere, HappensOnce) {
    for (int round = 0; round < 50; ++round) {
        const Watchdog watchdog;
        const Held<ConnectionObserver> connectionObserver;
        const Held<PropertyObserver> observer;
        DeviceRig rig;
        rig.device->AddConnectionObserver(connectionObserver.Get());
        rig.ConnectToGoodDevice();
        observer->onCall = [&] { rig.device->Disconnect(); };
        rig.device->AddPropertyObserver(observer.Get(), morquilVideoProcAmpPropertySetId);
        rig.link.Push("VIDEO PROC AMP:\nGain: 1\n\n");
        rig.device->Disconnect();
        EXPECT_TRUE(connectionObserver->AwaitNotified("disconnected cfnr"));
        EXPECT_EQ(connectionObserver->Notifications(), (Texts{"connected", "disconnected cfnr"}));
        EXPECT_LE(observer->Notifications().size(), 1U);
    }
}

}  // namespace
}  // namespace Morquil
