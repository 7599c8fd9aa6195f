// Whatever a host does inside any call: nothing hangs, nothing is used after its end, nothing is left over, and every
// end returns within a second.
#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <ostream>
#include <tuple>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"
#include "tests/kit/watchdog.h"
#include "tests/system/host/host.h"

namespace Morquil::Testing {
namespace {

const std::int32_t procAmpSet = FourCharacters("vpap");

/// A device, a host that connects to it, and observers of which one does something inside its first call.
struct Scene {
    ScriptedDevice device{CompleteDevice()};
    ConnectionObserver connection;
    PropertyObserver property;
    ConnectionObserver otherConnection;
    PropertyObserver otherProperty;
    RawObject object;
};

/// One call of the library into the host.
struct Call {
    const char* name;
    /// Triggers the call; the observer acts inside it.
    std::function<void(Scene&)> provoke;
    bool ofTheConnection = true;
    /// The device has gone by the time the observer acts.
    bool isLost = false;
};
void PrintTo(const Call& call, std::ostream* out) {
    *out << call.name;
}

struct Act {
    const char* name;
    std::function<void(Scene&)> run;
};
void PrintTo(const Act& act, std::ostream* out) {
    *out << act.name;
}

void DisconnectInTime(Scene& scene) {
    WithinASecond([&] { Disconnect(scene.object); });
}

void ReleaseInTime(Scene& scene) {
    WithinASecond([&] { scene.object.Release(); });
}

void ReportGain(Scene& scene) {
    scene.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
}

const Call calls[] = {
    {"Connected", [](Scene&) {}},
    {"DisconnectedByTheDevice", [](Scene& scene) { scene.device.HangUp(); }},
    {"DisconnectedByTheHost", DisconnectInTime},
    {"PropertyChanged", ReportGain, false},
    {"PropertyChangedRightBeforeALoss", ReportGain, false, true},
};

void ReadProcAmp(Scene& scene) {
    const RawObject amp = scene.object.QueryInterface(Iid::videoProcAmp);
    for (int getter = 4; getter <= 22; getter += 3) {
        std::int32_t min = 0;
        std::int32_t max = 0;
        amp.Call(getter, &min);
        amp.Call(getter + 1, &min, &max);
    }
}

void AddAndRemoveOthers(Scene& scene) {
    const RawObject& object = scene.object;
    EXPECT_EQ(object.Call(Slot::addConnectionObserver, scene.otherConnection.Get()), ok);
    EXPECT_EQ(object.Call(Slot::addPropertyObserver, scene.otherProperty.Get(), procAmpSet), ok);
    EXPECT_EQ(object.Call(Slot::removeConnectionObserver, scene.otherConnection.Get()), ok);
    EXPECT_EQ(object.Call(Slot::removePropertyObserver, scene.otherProperty.Get(), procAmpSet), ok);
    EXPECT_EQ(object.Call(Slot::addConnectionObserver, scene.otherConnection.Get()), ok);
    EXPECT_EQ(object.Call(Slot::addPropertyObserver, scene.otherProperty.Get(), procAmpSet), ok);
}

void RemoveAndAddSelf(Scene& scene) {
    const RawObject& object = scene.object;
    EXPECT_EQ(object.Call(Slot::addConnectionObserver, scene.connection.Get()), okFalse);
    EXPECT_EQ(object.Call(Slot::removeConnectionObserver, scene.connection.Get()), ok);
    EXPECT_EQ(object.Call(Slot::addConnectionObserver, scene.connection.Get()), ok);
    EXPECT_EQ(object.Call(Slot::removePropertyObserver, scene.property.Get(), procAmpSet), ok);
    EXPECT_EQ(object.Call(Slot::addPropertyObserver, scene.property.Get(), procAmpSet), ok);
}

const Act acts[] = {
    {"LastRelease", ReleaseInTime},
    {"Disconnect", DisconnectInTime},
    {"DisconnectAndLastRelease",
     [](Scene& scene) {
         DisconnectInTime(scene);
         ReleaseInTime(scene);
     }},
    {"RemoveSelf",
     [](Scene& scene) {
         EXPECT_EQ(scene.object.Call(Slot::removeConnectionObserver, scene.connection.Get()), ok);
         EXPECT_EQ(scene.object.Call(Slot::removePropertyObserver, scene.property.Get(), procAmpSet), ok);
     }},
    {"RemoveAndAddSelf", RemoveAndAddSelf},
    {"AddAndRemoveOthers", AddAndRemoveOthers},
    {"ReadEveryGetter", ReadProcAmp},
    {"Set", [](Scene& scene) { scene.object.QueryInterface(Iid::videoProcAmp).Call(3, 9); }},
    {"QueryInterface", [](Scene& scene) { EXPECT_TRUE(scene.object.QueryInterface(Iid::preset)); }},
};

class HostInACall : public testing::TestWithParam<std::tuple<Call, Act>> {};

TEST_P(HostInACall, EndsWell) {
    const Call& call = std::get<Call>(GetParam());
    const Act& act = std::get<Act>(GetParam());
    const Watchdog watchdog;
    std::promise<void> acted;
    {
        Scene scene;
        // The object and the second observer exist before anything acts.
        std::promise<void> ready;
        HostObserver& actor = call.ofTheConnection ? static_cast<HostObserver&>(scene.connection) : scene.property;
        const bool actsAtOnce = call.name == calls[0].name;
        actor.InCall([&, isFirst = true](const std::string& notification) mutable {
            const bool isItsCall = actsAtOnce || notification != "connected";
            if (!isItsCall || !std::exchange(isFirst, false)) {
                return;
            }
            ready.get_future().wait();
            if (call.isLost) {
                scene.device.HangUp();
            }
            act.run(scene);
            acted.set_value();
        });
        scene.object = ConnectAsync(scene.device.Address(), scene.connection);
        if (!actsAtOnce) {
            ASSERT_TRUE(scene.connection.AwaitCalls(1));
        }
        ASSERT_EQ(scene.object.Call(Slot::addPropertyObserver, scene.property.Get(), procAmpSet), ok);
        ready.set_value();
        call.provoke(scene);
        acted.get_future().wait();
        ReleaseInTime(scene);
        EXPECT_TRUE(scene.device.AwaitHostGone());
        for (HostObserver* const observer :
             {static_cast<HostObserver*>(&scene.connection), static_cast<HostObserver*>(&scene.property),
              static_cast<HostObserver*>(&scene.otherConnection), static_cast<HostObserver*>(&scene.otherProperty)}) {
            EXPECT_TRUE(observer->AwaitRelease());
        }
    }
}

std::string NameOf(const testing::TestParamInfo<HostInACall::ParamType>& test) {
    return std::string(std::get<0>(test.param).name) + "_" + std::get<1>(test.param).name;
}

INSTANTIATE_TEST_SUITE_P(EveryCall, HostInACall, testing::Combine(testing::ValuesIn(calls), testing::ValuesIn(acts)),
                         NameOf);

}  // namespace
}  // namespace Morquil::Testing
