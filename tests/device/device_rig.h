// A device object between a host and a device, both of which the test plays.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "device/device.h"
#include "tests/device/device_texts.h"
#include "tests/device/recording_observers.h"
#include "tests/platform/owned_bstr.h"
#include "tests/support/fake_comms.h"
#include "tests/support/watchdog.h"

namespace Morquil::Testing {

using Texts = std::vector<std::string>;
using Test::OwnedBstr;
using Test::Utf16;

/// A device object and its connection. Holds one reference to the object until the test lets it go.
class DeviceRig {
public:
    explicit DeviceRig(std::int32_t initialStateWait = CMorquilDevice::initialStateLimit)
        : device(new CMorquilDevice(link.MakeComms(), initialStateWait)) {}
    ~DeviceRig() {
        Release();
        const bool isDestroyed = link.AwaitDestroyed();
        EXPECT_TRUE(isDestroyed) << "the device object outlives its last reference";
        if (!isDestroyed) {
            static_cast<void>(ownedLink_.release());  // still in use
        }
    }
    DeviceRig(const DeviceRig&) = delete;
    DeviceRig& operator=(const DeviceRig&) = delete;

    /// Lets the test's reference go, if it still has it. Returns: the count that is left.
    ULONG Release() {
        CMorquilDevice* const held = std::exchange(device, nullptr);
        return held != nullptr ? held->Release() : 0;
    }

    /// Connects and waits for the end of the attempt.
    HRESULT Connect() { return device->Connect(address.Get(), nullptr, &failReason); }
    HRESULT ConnectAsync(IMorquilConnectionObserver* observer) {
        return device->Connect(address.Get(), observer, &failReason);
    }
    /// Connects to a device that tells its whole state and answers everything, and forgets what was said for it.
    void ConnectToGoodDevice(FakeConnection::Answer answer = DeviceAnswer) {
        link.AnswerWith(std::move(answer));
        link.Push(GreetingText());
        ASSERT_EQ(Connect(), S_OK);
        ASSERT_TRUE(link.AwaitIdle());
        sendsBefore_ = link.Sends().size();
    }
    void ConnectAsyncToGoodDevice(ConnectionObserver* observer) {
        link.AnswerWith(DeviceAnswer);
        link.Push(GreetingText());
        ASSERT_TRUE(SUCCEEDED(ConnectAsync(observer)));
        ASSERT_TRUE(observer->AwaitTold("connected"));
        ASSERT_TRUE(link.AwaitIdle());
        sendsBefore_ = link.Sends().size();
    }

    /// The device says `bytes`, as one piece, and they have been handled.
    void Tell(const std::string& bytes) {
        link.Push(bytes);
        ASSERT_TRUE(link.AwaitIdle());
    }
    /// What has been sent since the connection stood, one entry for each block.
    Texts SentSinceConnect() const {
        Texts sends = link.Sends();
        sends.erase(sends.begin(), sends.begin() + static_cast<std::ptrdiff_t>(sendsBefore_));
        return sends;
    }

    /// The feature object behind an interface, without a reference of its own.
    template <class Interface>
    Interface* Feature(const IID& iid) const {
        void* out = nullptr;
        EXPECT_EQ(device->QueryInterface(iid, &out), S_OK);
        device->Release();
        return static_cast<Interface*>(out);
    }
    IMorquilVideoProcAmp* ProcAmp() const { return Feature<IMorquilVideoProcAmp>(IID_IMorquilVideoProcAmp); }
    /// The gain in the mirror, or -999 while it is not known.
    int Gain() const {
        int gain = -999;
        ProcAmp()->GetGain(&gain);
        return gain;
    }
    bool KnowsDevice() const {
        UINT version = 0;
        return device->GetSoftwareVersion(&version) == S_OK;
    }

private:
    std::unique_ptr<FakeConnection> ownedLink_ = std::make_unique<FakeConnection>();

public:
    FakeConnection& link = *ownedLink_;
    CMorquilDevice* device;
    const OwnedBstr address{Utf16{OLESTR("device.test")}};
    _MorquilConnectToFailure failReason = morquilConnectWarningIncompatibleFirmware;

private:
    std::size_t sendsBefore_ = 0;
};

class DeviceTest : public testing::Test {
protected:
    Watchdog watchdog;
    DeviceRig rig;
};

}  // namespace Morquil::Testing
