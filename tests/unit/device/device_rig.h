// A device object between a host and a device; the test plays both.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "device/device.h"
#include "tests/kit/fake_comms.h"
#include "tests/kit/owned_bstr.h"
#include "tests/kit/watchdog.h"
#include "tests/unit/device/device_texts.h"
#include "tests/unit/device/recording_observers.h"

namespace Morquil::Testing {

using Texts = std::vector<std::string>;

/// A device object and its connection. Holds one reference to the object until the test releases it.
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

    /// Releases the test's reference, if it still has it. Returns: the remaining count.
    ULONG Release() {
        CMorquilDevice* const held = std::exchange(device, nullptr);
        return held != nullptr ? held->Release() : 0;
    }

    /// Connects and waits for the end of the attempt.
    HRESULT Connect() { return device->Connect(address.Get(), nullptr, &failReason); }
    HRESULT ConnectAsync(IMorquilConnectionObserver* observer) {
        return device->Connect(address.Get(), observer, &failReason);
    }
    /// Connects to a device that reports its whole state and answers everything, and discards the traffic of the
    /// connection so far.
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
        ASSERT_TRUE(observer->AwaitNotified("connected"));
        ASSERT_TRUE(link.AwaitIdle());
        sendsBefore_ = link.Sends().size();
    }

    /// The device sends `bytes` as one piece. Returns once they have been handled.
    void DeviceSends(const std::string& bytes) {
        link.Push(bytes);
        ASSERT_TRUE(link.AwaitIdle());
    }
    /// What has been sent since the connection was established, one entry for each block.
    Texts SentSinceConnect() const {
        Texts sends = link.Sends();
        sends.erase(sends.begin(), sends.begin() + static_cast<std::ptrdiff_t>(sendsBefore_));
        return sends;
    }

    /// The feature object that implements an interface, without a reference of its own.
    template <class Interface>
    Interface* Feature(const IID& iid) const {
        void* out = nullptr;
        EXPECT_EQ(device->QueryInterface(iid, &out), S_OK);
        device->Release();
        return static_cast<Interface*>(out);
    }
    IMorquilVideoProcAmp* ProcAmp() const { return Feature<IMorquilVideoProcAmp>(IID_IMorquilVideoProcAmp); }
    /// The gain in the mirror, or -999 while it is unknown.
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
