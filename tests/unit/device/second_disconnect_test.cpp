// A Disconnect that finds the connection already ending returns at once: waiting could deadlock a host. What it does
// not wait for comes before the Disconnect that ends the connection returns.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string>

#include "device/device.h"
#include "tests/kit/threads.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

class SecondDisconnect : public DeviceTest {
protected:
    SecondDisconnect() {
        rig.device->AddConnectionObserver(connectionObserver.Get());
        rig.ConnectToGoodDevice();
        rig.device->AddPropertyObserver(propertyObserver.Get(), morquilVideoProcAmpPropertySetId);
    }

    void Disconnect() {
        EXPECT_EQ(rig.device->Disconnect(), S_OK);
        const auto lock = Monitor::Enter();
        ++returned;
        Monitor::Changed();
    }
    bool AwaitReturned(int count) {
        return Monitor::Await([&] { return returned == count; });
    }

    int returned = 0;  // guarded by the monitor
    std::promise<void> mayReturn;
    Held<ConnectionObserver> connectionObserver;
    Held<PropertyObserver> propertyObserver;
};

TEST_F(SecondDisconnect, ReturnsWhileTheFirstWaitsForACallback) {
    propertyObserver->onCall = [may = mayReturn.get_future().share()] { may.wait(); };
    rig.link.Push("VIDEO PROC AMP:\nGain: 1\n\nVIDEO PROC AMP:\nGain: 2\n\n");
    EXPECT_TRUE(propertyObserver->AwaitNotified("vpap"));
    {
        const Morquil::Testing::Threads hosts(2, [&] { Disconnect(); });
        EXPECT_TRUE(AwaitReturned(1));
        EXPECT_EQ(connectionObserver->Notifications(), Texts{"connected"}) << "the end is still to come";
        mayReturn.set_value();
    }
    EXPECT_EQ(connectionObserver->Notifications(), (Texts{"connected", "disconnected cfnr"}));
    EXPECT_EQ(propertyObserver->Notifications(), Texts{"vpap"}) << "no callback comes after the first has returned";
}

TEST_F(SecondDisconnect, ReturnsWhileALossIsNotified) {
    connectionObserver->onCall = [may = mayReturn.get_future().share()] { may.wait(); };  // maybe past the test's end
    rig.link.Push(CommsEvent::SocketError);
    EXPECT_TRUE(connectionObserver->AwaitNotified("disconnected cfnr"));
    Disconnect();
    mayReturn.set_value();
    EXPECT_EQ(connectionObserver->Notifications(), (Texts{"connected", "disconnected cfnr"}));
}

}  // namespace
}  // namespace Morquil
