#include "device/discovery.h"

#include <gtest/gtest.h>

#include "MorquilEntry.h"
#include "device/device.h"
#include "tests/kit/threads.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using Morquil::Testing::Threads;
using namespace Testing;

class Discovery : public testing::Test {
protected:
    ~Discovery() override { EXPECT_EQ(discovery->Release(), 0U); }

    Watchdog watchdog;
    IMorquilDiscovery* discovery = GetMorquilDiscoveryInstance_0000();
    /// Cannot be reached, which is known without using the network.
    const OwnedBstr nowhere{Utf16{}};
    IMorquilDevice* device = nullptr;
    _MorquilConnectToFailure reason = morquilConnectToFailureNoFailure;
};

TEST_F(Discovery, IsOneObject) {
    ASSERT_NE(discovery, nullptr);
    IMorquilDiscovery* const again = GetMorquilDiscoveryInstance_0000();
    EXPECT_EQ(again, discovery);
    EXPECT_EQ(again->AddRef(), 3U);
    EXPECT_EQ(again->Release(), 2U);
    EXPECT_EQ(again->Release(), 1U);
}

TEST_F(Discovery, KnowsItsInterfaces) {
    for (const IID* const iid : {&IID_IUnknown, &IID_IMorquilDiscovery}) {
        void* out = nullptr;
        EXPECT_EQ(discovery->QueryInterface(*iid, &out), S_OK);
        EXPECT_EQ(out, discovery);
        EXPECT_EQ(discovery->Release(), 1U);
    }
    void* out = &reason;
    EXPECT_EQ(discovery->QueryInterface(IID_IMorquilDevice, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(discovery->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Discovery, FindsNoDevicesAndWritesNothing) {
    auto* list = reinterpret_cast<IMorquilIterator*>(&reason);
    IMorquilIterator* const before = list;
    EXPECT_EQ(discovery->FindDevices(&list), S_OK);
    EXPECT_EQ(list, before);
    EXPECT_EQ(discovery->FindDevices(nullptr), S_OK);
}

TEST_F(Discovery, RefusesNullPointers) {
    const Held<ConnectionObserver> observer;
    EXPECT_EQ(discovery->Connect(nowhere.Get(), nullptr, &reason), E_POINTER);
    EXPECT_EQ(discovery->Connect(nowhere.Get(), &device, nullptr), E_POINTER);
    EXPECT_EQ(discovery->ConnectAsync(nowhere.Get(), nullptr, observer.Get()), E_POINTER);
    EXPECT_EQ(discovery->ConnectAsync(nowhere.Get(), &device, nullptr), E_POINTER);
    EXPECT_EQ(discovery->Disconnect(nullptr), E_POINTER);
    EXPECT_EQ(device, nullptr);
    EXPECT_EQ(reason, morquilConnectToFailureNoFailure);
    EXPECT_EQ(observer->References(), 1U);
}

TEST_F(Discovery, ReturnsNoDeviceWhenItCannotConnect) {
    for (const BSTR address : {nowhere.Get(), BSTR{nullptr}}) {
        reason = morquilConnectToFailureNoFailure;
        EXPECT_EQ(discovery->Connect(address, &device, &reason), E_FAIL);
        EXPECT_EQ(device, nullptr);
        EXPECT_EQ(reason, morquilConnectToFailureNoResponse);
    }
}

TEST_F(Discovery, ReturnsADeviceAtOnceAndReportsLaterThatItCannotConnect) {
    const Held<ConnectionObserver> observer;
    EXPECT_EQ(discovery->ConnectAsync(nowhere.Get(), &device, observer.Get()), S_OK);
    ASSERT_NE(device, nullptr);
    EXPECT_TRUE(observer->AwaitNotified(1));
    EXPECT_EQ(observer->Notifications(), Texts{"disconnected cfnr"});
    device->Release();
    EXPECT_TRUE(observer->AwaitReferences(1));
}

TEST_F(Discovery, DisconnectsADeviceAndLeavesTheHostItsReference) {
    DeviceRig rig;
    rig.ConnectToGoodDevice();
    EXPECT_EQ(discovery->Disconnect(rig.device), S_OK);
    EXPECT_FALSE(rig.link.IsOpen());
    EXPECT_FALSE(rig.KnowsDevice());
    EXPECT_EQ(discovery->Disconnect(rig.device), S_OK);
    EXPECT_EQ(rig.Release(), 0U);
}

TEST_F(Discovery, IsNotNeededByADevice) {
    const Held<ConnectionObserver> observer;
    ASSERT_EQ(discovery->ConnectAsync(nowhere.Get(), &device, observer.Get()), S_OK);
    EXPECT_EQ(discovery->Release(), 0U);
    UINT version = 0;
    EXPECT_EQ(device->GetSoftwareVersion(&version), E_FAIL);
    EXPECT_TRUE(observer->AwaitNotified(1));
    device->Release();
    EXPECT_EQ(GetMorquilDiscoveryInstance_0000()->AddRef(), 2U) << "a fresh object";
    IMorquilDiscovery* const fresh = GetMorquilDiscoveryInstance_0000();
    fresh->Release();
    fresh->Release();
    discovery = fresh;
}

TEST(DiscoveryAcrossThreads, IsNeverAnObjectThatIsBeingDestroyed) {
    const Watchdog watchdog;
    const Threads hosts(4, [] {
        for (int count = 0; count < 2000; ++count) {
            IMorquilDiscovery* discovery = GetMorquilDiscoveryInstance_0000();
            ASSERT_NE(discovery, nullptr);
            EXPECT_EQ(discovery->FindDevices(nullptr), S_OK);
            discovery->Release();
        }
    });
}

}  // namespace
}  // namespace Morquil
