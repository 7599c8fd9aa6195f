// Everything that a host may do inside each callback: nothing hangs, nothing is used after its end, nothing is left
// over, and every end returns within a second.
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <utility>

#include "MorquilEntry.h"
#include "device/device.h"
#include "tests/kit/monitor.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

/// A connected device with an observer of each kind, one of which does something inside its call.
struct Scene {
    DeviceRig rig;
    Held<ConnectionObserver> connectionObserver;
    Held<PropertyObserver> propertyObserver;
    Held<ConnectionObserver> otherConnectionObserver;
    Held<PropertyObserver> otherPropertyObserver;
    /// References that the test does not hold while the observer acts.
    ULONG otherReferences = 0;

    Scene() {
        rig.device->AddConnectionObserver(connectionObserver.Get());
        rig.device->AddPropertyObserver(propertyObserver.Get(), morquilVideoProcAmpPropertySetId);
    }

    HRESULT Disconnect() {
        return WithinASecond([&] { return rig.device->Disconnect(); });
    }
    ULONG Release() {
        return WithinASecond([&] { return rig.Release(); });
    }
};

struct Act {
    const char* name;
    std::function<void(Scene&)> run;
};
void PrintTo(const Act& act, std::ostream* out) {
    *out << act.name;
}

void ReadProcAmp(Scene& scene) {
    auto* const procAmp = scene.rig.ProcAmp();
    int value = 0;
    int limit = 0;
    using ProcAmp = IMorquilVideoProcAmp;
    for (const auto getter : {&ProcAmp::GetGain, &ProcAmp::GetBlackLevel, &ProcAmp::GetSaturation, &ProcAmp::GetHue,
                              &ProcAmp::GetRy, &ProcAmp::GetBy, &ProcAmp::GetSharpness}) {
        (procAmp->*getter)(&value);
    }
    for (const auto getter :
         {&ProcAmp::GetGainRange, &ProcAmp::GetBlackLevelRange, &ProcAmp::GetSaturationRange, &ProcAmp::GetHueRange,
          &ProcAmp::GetRyRange, &ProcAmp::GetByRange, &ProcAmp::GetSharpnessRange}) {
        (procAmp->*getter)(&value, &limit);
    }
}

void AddAndRemoveOthers(Scene& scene) {
    CMorquilDevice& device = *scene.rig.device;
    EXPECT_EQ(device.AddConnectionObserver(scene.otherConnectionObserver.Get()), S_OK);
    EXPECT_EQ(device.AddPropertyObserver(scene.otherPropertyObserver.Get(), morquilVideoProcAmpPropertySetId), S_OK);
    EXPECT_EQ(device.RemoveConnectionObserver(scene.otherConnectionObserver.Get()), S_OK);
    EXPECT_EQ(device.RemovePropertyObserver(scene.otherPropertyObserver.Get(), morquilVideoProcAmpPropertySetId), S_OK);
    EXPECT_EQ(device.AddConnectionObserver(scene.otherConnectionObserver.Get()), S_OK);
}

void RemoveAndAddBoth(Scene& scene) {
    CMorquilDevice& device = *scene.rig.device;
    EXPECT_EQ(device.AddConnectionObserver(scene.connectionObserver.Get()), S_FALSE);
    EXPECT_EQ(device.RemoveConnectionObserver(scene.connectionObserver.Get()), S_OK);
    EXPECT_EQ(device.RemovePropertyObserver(scene.propertyObserver.Get(), morquilVideoProcAmpPropertySetId), S_OK);
    EXPECT_EQ(device.AddConnectionObserver(scene.connectionObserver.Get()), S_OK);
}

void DisconnectThroughDiscovery(Scene& scene) {
    IMorquilDiscovery* const discovery = GetMorquilDiscoveryInstance_0000();
    EXPECT_EQ(WithinASecond([&] { return discovery->Disconnect(scene.rig.device); }), S_OK);
    discovery->Release();
}

const Act acts[] = {
    {"LastRelease", [](Scene& scene) { EXPECT_EQ(scene.Release(), scene.otherReferences); }},
    {"Disconnect", [](Scene& scene) { EXPECT_EQ(scene.Disconnect(), S_OK); }},
    {"DisconnectThroughDiscovery", DisconnectThroughDiscovery},
    {"DisconnectAndLastRelease",
     [](Scene& scene) {
         EXPECT_EQ(scene.Disconnect(), S_OK);
         EXPECT_EQ(scene.Release(), scene.otherReferences);
     }},
    {"RemoveSelf",
     [](Scene& scene) {
         EXPECT_EQ(scene.rig.device->RemoveConnectionObserver(scene.connectionObserver.Get()), S_OK);
         EXPECT_EQ(
             scene.rig.device->RemovePropertyObserver(scene.propertyObserver.Get(), morquilVideoProcAmpPropertySetId),
             S_OK);
     }},
    {"RemoveAndAddSelf", RemoveAndAddBoth},
    {"AddAndRemoveOthers", AddAndRemoveOthers},
    {"ReadEveryGetter", ReadProcAmp},
    {"Set", [](Scene& scene) { EXPECT_EQ(scene.rig.ProcAmp()->SetGain(9), S_OK); }},
    {"QueryInterface",
     [](Scene& scene) {
         void* out = nullptr;
         EXPECT_EQ(scene.rig.device->QueryInterface(IID_IMorquilPreset, &out), S_OK);
         EXPECT_EQ(static_cast<IUnknown*>(out)->Release(), scene.otherReferences + 1);
     }},
};

std::string ActName(const testing::TestParamInfo<Act>& info) {
    return info.param.name;
}

class ActInACallback : public testing::TestWithParam<Act> {
protected:
    /// Makes `observer` act, in its next call only.
    template <class Observer>
    void ActIn(const Held<Observer>& observer) {
        observer->onCall = [this, acted = false]() mutable {
            if (!std::exchange(acted, true)) {
                GetParam().run(scene);
                const auto lock = Monitor::Enter();
                hasActed = true;
                Monitor::Changed();
            }
        };
    }
    /// The device is destroyed and has released all its references.
    void ExpectCleanEnd() {
        EXPECT_TRUE(Monitor::Await([&] { return hasActed; }));
        scene.Release();
        EXPECT_TRUE(scene.rig.link.AwaitDestroyed());
        EXPECT_FALSE(scene.rig.link.IsOpen());
        EXPECT_TRUE(scene.connectionObserver->AwaitReferences(1));
        EXPECT_TRUE(scene.propertyObserver->AwaitReferences(1));
        EXPECT_TRUE(scene.otherConnectionObserver->AwaitReferences(1));
        EXPECT_TRUE(scene.otherPropertyObserver->AwaitReferences(1));
    }

    Watchdog watchdog;
    bool hasActed = false;
    Scene scene;
};

TEST_P(ActInACallback, OfAChange) {
    scene.rig.ConnectToGoodDevice();
    ActIn(scene.propertyObserver);
    scene.rig.link.Push("VIDEO PROC AMP:\nGain: 1\n\nVIDEO PROC AMP:\nGain: 2\n\n");
    scene.rig.link.Push("VIDEO PROC AMP:\nGain: 3\n\n");
    ExpectCleanEnd();
}

TEST_P(ActInACallback, OfAChangeRightBeforeALoss) {
    scene.rig.ConnectToGoodDevice();
    ActIn(scene.propertyObserver);
    scene.rig.link.Push("VIDEO PROC AMP:\nGain: 1\n\n");
    scene.rig.link.Push(CommsEvent::SocketError);
    ExpectCleanEnd();
}

TEST_P(ActInACallback, OfALoss) {
    scene.rig.ConnectToGoodDevice();
    ActIn(scene.connectionObserver);
    scene.rig.link.Push(CommsEvent::SocketError);
    ExpectCleanEnd();
}

TEST_P(ActInACallback, OfTheHostsOwnDisconnect) {
    scene.rig.ConnectToGoodDevice();
    ActIn(scene.connectionObserver);
    // The host that disconnects holds its own reference, which an observer cannot release.
    CMorquilDevice* const device = scene.rig.device;
    device->AddRef();
    scene.otherReferences = 1;
    EXPECT_EQ(WithinASecond([&] { return device->Disconnect(); }), S_OK);
    WithinASecond([&] { return device->Release(); });
    ExpectCleanEnd();
}

TEST_P(ActInACallback, OfASynchronousConnect) {
    ActIn(scene.connectionObserver);
    scene.otherReferences = 1;
    scene.rig.link.AnswerWith(DeviceAnswer);
    scene.rig.link.Push(GreetingText());
    EXPECT_EQ(scene.rig.Connect(), S_OK);
    ExpectCleanEnd();
}

TEST_P(ActInACallback, OfAnAsynchronousConnect) {
    ActIn(scene.connectionObserver);
    scene.otherReferences = 1;
    scene.rig.link.AnswerWith(DeviceAnswer);
    scene.rig.link.Push(GreetingText());
    EXPECT_EQ(scene.rig.ConnectAsync(scene.connectionObserver.Get()), S_FALSE);
    ExpectCleanEnd();
}

TEST_P(ActInACallback, OfAFailedConnect) {
    ActIn(scene.connectionObserver);
    scene.otherReferences = 1;
    scene.rig.link.RefuseOpen();
    EXPECT_EQ(scene.rig.ConnectAsync(scene.connectionObserver.Get()), S_FALSE);
    ExpectCleanEnd();
}

INSTANTIATE_TEST_SUITE_P(Lifetime, ActInACallback, testing::ValuesIn(acts), ActName);

}  // namespace
}  // namespace Morquil
