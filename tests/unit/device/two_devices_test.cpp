// Two device objects whose observers end each other.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "device/device.h"
#include "tests/kit/monitor.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

/// Two connected devices whose observers meet inside their calls, each on its own connection thread.
class TwoDevices : public testing::Test {
protected:
    struct Side {
        DeviceRig rig;
        Held<PropertyObserver> observer;
    };

    TwoDevices() {
        for (Side* const side : {&one, &other}) {
            side->observer->name = side == &one ? "one" : "other";
            side->observer->sharedNotes = &notes;
            side->rig.ConnectToGoodDevice();
            side->rig.device->AddPropertyObserver(side->observer.Get(), morquilVideoProcAmpPropertySetId);
        }
    }

    /// In the first call of each observer, once both are inside theirs, `act` is applied to the device of the other
    /// side.
    void ActOnEachOther(const std::function<void(Side&)>& act) {
        for (Side* const side : {&one, &other}) {
            side->observer->onCall = [this, side, act, first = true]() mutable {
                if (std::exchange(first, false)) {
                    EXPECT_TRUE(one.observer->AwaitNotified(1) && other.observer->AwaitNotified(1));
                    act(side == &one ? other : one);
                }
            };
        }
        for (Side* const side : {&one, &other}) {
            side->rig.link.Push("VIDEO PROC AMP:\nGain: 1\n\nVIDEO PROC AMP:\nGain: 2\n\n");
        }
    }
    void NoteEndOf(const Side& side) {
        const auto lock = Monitor::Enter();
        notes.push_back(side.observer->name + " has ended");
        Monitor::Changed();
    }
    /// Once the call that ended a device has returned, its observer gets no further notifications.
    void ExpectNothingAfterAnEnd() {
        const auto lock = Monitor::Enter();
        for (const std::string name : {"one", "other"}) {
            bool hasEnded = false;
            for (const std::string& note : notes) {
                hasEnded |= note == name + " has ended";
                EXPECT_FALSE(hasEnded && note == name + " vpap") << testing::PrintToString(notes);
            }
            EXPECT_TRUE(hasEnded) << name;
        }
    }

    Watchdog watchdog;
    Texts notes;
    Side one;
    Side other;
};

TEST_F(TwoDevices, DisconnectEachOtherInTheirCallbacks) {
    ActOnEachOther([this](Side& side) {
        EXPECT_EQ(side.rig.device->Disconnect(), S_OK);
        NoteEndOf(side);
    });
    EXPECT_TRUE(one.rig.link.AwaitClosed());
    EXPECT_TRUE(other.rig.link.AwaitClosed());
    ExpectNothingAfterAnEnd();
    EXPECT_EQ(one.rig.Gain(), -999);
    EXPECT_EQ(other.rig.Gain(), -999);
}

TEST_F(TwoDevices, ReleaseEachOtherInTheirCallbacks) {
    ActOnEachOther([this](Side& side) {
        EXPECT_EQ(side.rig.Release(), 0U);
        NoteEndOf(side);
    });
    EXPECT_TRUE(one.rig.link.AwaitDestroyed());
    EXPECT_TRUE(other.rig.link.AwaitDestroyed());
    ExpectNothingAfterAnEnd();
}

TEST_F(TwoDevices, DisconnectEachOtherInTheCallbacksOfTheirLoss) {
    const Held<ConnectionObserver> first;
    const Held<ConnectionObserver> second;
    const auto disconnect = [this](Side& side) {
        EXPECT_EQ(side.rig.device->Disconnect(), S_OK);
        NoteEndOf(side);
    };
    first->onCall = [&] { disconnect(other); };
    second->onCall = [&] { disconnect(one); };
    one.rig.device->AddConnectionObserver(first.Get());
    other.rig.device->AddConnectionObserver(second.Get());
    one.rig.link.Push(CommsEvent::SocketError);
    other.rig.link.Push(CommsEvent::SocketError);
    EXPECT_TRUE(Monitor::Await([&] { return notes.size() == 2; }));
    EXPECT_EQ(first->Notifications(), Texts{"disconnected cfnr"});
    EXPECT_EQ(second->Notifications(), Texts{"disconnected cfnr"});
}

TEST_F(TwoDevices, OneIsReleasedInTheCallbackOfTheOther) {
    one.observer->onCall = [&] {
        EXPECT_EQ(other.rig.Release(), 0U);
        EXPECT_TRUE(other.rig.link.IsDestroyed());
    };
    one.rig.link.Push("VIDEO PROC AMP:\nGain: 1\n\n");
    EXPECT_TRUE(other.rig.link.AwaitDestroyed());
    EXPECT_TRUE(one.rig.link.AwaitIdle());
    EXPECT_EQ(one.rig.Gain(), 1);
}

}  // namespace
}  // namespace Morquil
