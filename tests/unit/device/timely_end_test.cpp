// Disconnect and the last Release return within a second on another thread than the creator's, whatever the device
// does, and also while an observer is being called.
#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

#include "device/device.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

enum class Manner { Silent, NotAcknowledging, NotReading, Flooding };
enum class Ending { Disconnect, LastRelease };

class TimelyEnd : public testing::TestWithParam<std::tuple<Manner, Ending>> {
protected:
    TimelyEnd() {
        rig.ConnectToGoodDevice(DeviceAnswerWithoutEcho);
        observer->onCall = [this] { OnCall(); };
        rig.device->AddPropertyObserver(observer.Get(), morquilVideoProcAmpPropertySetId);
    }

    static bool Is(Manner manner) { return std::get<Manner>(GetParam()) == manner; }

    void BeginToBehave() {
        if (Is(Manner::NotAcknowledging)) {
            rig.link.AnswerWith({});
            rig.ProcAmp()->SetBlackLevel(5);
            EXPECT_TRUE(rig.link.AwaitSent("Black: 5\n"));
            rig.ProcAmp()->SetBlackLevel(6);
        } else if (Is(Manner::NotReading)) {
            rig.link.BlockSends(-1);
            rig.ProcAmp()->SetBlackLevel(5);
            EXPECT_TRUE(rig.link.AwaitBlockedSends(1));
        } else if (Is(Manner::Flooding)) {
            PushGain();
        }
    }
    void PushGain() { rig.link.Push("VIDEO PROC AMP:\nGain: " + std::to_string(++gain) + "\n\n"); }

    /// A flood has something new whenever the last has been notified. A held call lasts until the end has begun; how
    /// far that has got by then is left to chance.
    void OnCall() {
        if (Is(Manner::Flooding)) {
            PushGain();
        }
        if (std::exchange(holdsCall, false)) {
            called.set_value();
            begun.get_future().wait();
        }
    }
    void EndOnAnotherThread() {
        std::thread([this] {
            begun.set_value();
            const OneSecond limit;
            if (std::get<Ending>(GetParam()) == Ending::Disconnect) {
                EXPECT_EQ(rig.device->Disconnect(), S_OK);
            } else {
                EXPECT_EQ(rig.Release(), 0U);
            }
        }).join();
        EXPECT_FALSE(rig.link.IsOpen());
    }

    Watchdog watchdog;
    bool holdsCall = false;
    int gain = 0;
    std::promise<void> called;
    std::promise<void> begun;
    Held<PropertyObserver> observer;
    DeviceRig rig;
};

TEST_P(TimelyEnd, WhateverTheDeviceDoes) {
    BeginToBehave();
    EndOnAnotherThread();
}

// A thread that cannot send makes no callbacks.
class TimelyEndInACall : public TimelyEnd {};

TEST_P(TimelyEndInACall, WhateverTheDeviceDoes) {
    holdsCall = true;
    BeginToBehave();
    if (!Is(Manner::Flooding)) {
        PushGain();
    }
    called.get_future().wait();
    EndOnAnotherThread();
}

std::string CellName(const testing::TestParamInfo<TimelyEnd::ParamType>& cell) {
    static const char* const manners[] = {"Silent", "NotAcknowledging", "NotReading", "Flooding"};
    const auto [manner, ending] = cell.param;
    return manners[static_cast<int>(manner)] +
           std::string(ending == Ending::Disconnect ? "_Disconnect" : "_LastRelease");
}

INSTANTIATE_TEST_SUITE_P(Device, TimelyEnd,
                         testing::Combine(testing::Values(Manner::Silent, Manner::NotAcknowledging, Manner::NotReading,
                                                          Manner::Flooding),
                                          testing::Values(Ending::Disconnect, Ending::LastRelease)),
                         CellName);
INSTANTIATE_TEST_SUITE_P(Device, TimelyEndInACall,
                         testing::Combine(testing::Values(Manner::Silent, Manner::NotAcknowledging, Manner::Flooding),
                                          testing::Values(Ending::Disconnect, Ending::LastRelease)),
                         CellName);

}  // namespace
}  // namespace Morquil
