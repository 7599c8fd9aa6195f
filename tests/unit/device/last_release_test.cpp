// What the release of the last reference to a device object ends, and who is still notified.
#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "device/device.h"
#include "tests/kit/threads.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using Morquil::Testing::Threads;
using namespace Testing;

class LastRelease : public DeviceTest {
protected:
    Held<ConnectionObserver> observer;
    Held<PropertyObserver> propertyObserver;
};

TEST_F(LastRelease, EndsAConnectionAndNotifiesNoObserver) {
    rig.device->AddConnectionObserver(observer.Get());
    rig.ConnectToGoodDevice();
    EXPECT_EQ(rig.Release(), 0U);
    EXPECT_TRUE(rig.link.IsDestroyed()) << "nothing else was in progress";
    EXPECT_FALSE(rig.link.IsOpen());
    EXPECT_EQ(observer->Notifications(), Texts{"connected"});
    EXPECT_EQ(observer->References(), 1U);
}

TEST_F(LastRelease, EndsAnUnusedDevice) {
    rig.device->AddConnectionObserver(observer.Get());
    EXPECT_EQ(rig.Release(), 0U);
    EXPECT_TRUE(rig.link.IsDestroyed());
    EXPECT_EQ(observer->References(), 1U);
}

TEST_F(LastRelease, EndsADeviceThroughAFeature) {
    rig.ConnectToGoodDevice();
    void* out = nullptr;
    EXPECT_EQ(rig.device->QueryInterface(IID_IMorquilPreset, &out), S_OK);
    EXPECT_EQ(rig.Release(), 1U);
    EXPECT_TRUE(rig.link.IsOpen());
    EXPECT_EQ(static_cast<IUnknown*>(out)->Release(), 0U);
    EXPECT_TRUE(rig.link.IsDestroyed());
}

TEST_F(LastRelease, EndsADeviceThatDoesNotRead) {
    rig.ConnectToGoodDevice();
    rig.link.BlockSends(-1);
    rig.ProcAmp()->SetGain(5);
    ASSERT_TRUE(rig.link.AwaitBlockedSends(1));
    EXPECT_EQ(rig.Release(), 0U);
    EXPECT_TRUE(rig.link.IsDestroyed());
}

TEST_F(LastRelease, InsideACallbackIsFollowedByNoOther) {
    const Held<PropertyObserver> second;
    rig.ConnectToGoodDevice();
    rig.device->AddPropertyObserver(propertyObserver.Get(), morquilColorCorrectionPropertySetId);
    rig.device->AddPropertyObserver(second.Get(), morquilColorCorrectionPropertySetId);
    rig.device->AddPropertyObserver(second.Get(), morquilVideoClipPropertySetId);
    rig.device->AddConnectionObserver(observer.Get());
    propertyObserver->onCall = [&] { EXPECT_EQ(rig.Release(), 0U); };
    rig.link.Push("VIDEO ADJUST:\nRed: 5\nLuma low: 5\n\nVIDEO ADJUST:\nRed: 6\nLuma low: 6\n\n");
    EXPECT_TRUE(rig.link.AwaitDestroyed());
    EXPECT_EQ(propertyObserver->Notifications(), Texts{"coco"});
    EXPECT_TRUE(second->Notifications().empty());
    EXPECT_TRUE(observer->Notifications().empty());
}

TEST_F(LastRelease, RightAfterAnAsynchronousConnectLetsTheAttemptSucceed) {
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    rig.Release();
    rig.link.Push(CompleteText());
    EXPECT_TRUE(rig.link.AwaitDestroyed());
    EXPECT_EQ(observer->Notifications(), Texts{"connected"});
    EXPECT_TRUE(observer->AwaitReferences(1));
}

TEST_F(LastRelease, RightAfterAnAsynchronousConnectLetsTheAttemptFail) {
    rig.link.RefuseConnect();
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    rig.Release();
    EXPECT_TRUE(rig.link.AwaitDestroyed());
    EXPECT_EQ(observer->Notifications(), Texts{"disconnected cfnr"});
}

TEST(LastReleaseWhileConnecting, LetsTheAttemptTimeOut) {
    const Watchdog watchdog;
    const Held<ConnectionObserver> observer;
    DeviceRig rig(30'000);
    EXPECT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    EXPECT_EQ(rig.Release(), 1U);
    EXPECT_TRUE(rig.link.AwaitDestroyed());
    EXPECT_EQ(observer->Notifications(), Texts{"disconnected cfnr"});
}

TEST(LastReleaseOfSeveralThreads, EndsTheDeviceOnce) {
    for (int round = 0; round < 50; ++round) {
        const Watchdog watchdog;
        const Held<PropertyObserver> observer;
        DeviceRig rig;
        rig.device->AddPropertyObserver(observer.Get(), morquilVideoProcAmpPropertySetId);
        rig.link.Push(GreetingText());
        rig.link.AnswerWith(DeviceAnswer);
        ASSERT_EQ(rig.Connect(), S_OK);
        CMorquilDevice* const device = rig.device;
        std::atomic<int> zeroes = 0;
        for (int reference = 0; reference < 3; ++reference) {
            device->AddRef();
        }
        rig.device = nullptr;
        for (int gain = 1; gain < 20; ++gain) {
            rig.link.Push("VIDEO PROC AMP:\nGain: " + std::to_string(gain) + "\n\n");
        }
        {
            const Threads hosts(4, [&] { zeroes += device->Release() == 0 ? 1 : 0; });
        }
        EXPECT_EQ(zeroes, 1);
        EXPECT_TRUE(rig.link.AwaitDestroyed());
        EXPECT_TRUE(observer->AwaitReferences(1));
    }
}

}  // namespace
}  // namespace Morquil
