// Many host threads use one device object while the device floods it. Run under a thread sanitizer this also shows that
// the mirror is read and written without a race; so nothing here makes the host's threads take a lock of the test.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include "device/device.h"
#include "tests/kit/threads.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using Morquil::Testing::Threads;
using namespace Testing;

/// Counts references and calls without a lock.
class CountingObserver final : public IMorquilPropertyObserver {
public:
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return references.fetch_add(1, std::memory_order_relaxed) + 1; }
    STDMETHODIMP_(ULONG) Release() override { return references.fetch_sub(1, std::memory_order_relaxed) - 1; }
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId) override {
        const int call = calls.fetch_add(1, std::memory_order_relaxed) + 1;
        if (onCall) {
            onCall(call);
        }
        return S_OK;
    }

    /// Runs inside each call with its number. To be set before the observer is added.
    std::function<void(int)> onCall;
    std::atomic<ULONG> references = 1;
    std::atomic<int> calls = 0;
};

class DeviceInAFlood : public testing::Test {
protected:
    static constexpr int floodedBlocks = 2000;

    DeviceInAFlood() { rig.ConnectToGoodDevice(DeviceAnswerWithoutEcho); }
    ~DeviceInAFlood() override {
        rig.Release();
        EXPECT_TRUE(rig.link.AwaitDestroyed());
    }

    /// The device sends something new whenever the host has been notified, and is always some blocks ahead.
    void FloodUntilItIsReleased() {
        constexpr int ahead = 16;
        spring.onCall = [this](int call) { PushGain(call + ahead); };
        rig.device->AddPropertyObserver(&spring, morquilVideoProcAmpPropertySetId);
        for (int gain = 1; gain <= ahead; ++gain) {
            PushGain(gain);
        }
    }
    void PushGain(int gain) { rig.link.Push("VIDEO PROC AMP:\nGain: " + std::to_string(gain) + "\n\n"); }

    void Flood() {
        for (int block = 1; block <= floodedBlocks; ++block) {
            const std::string number = std::to_string(block);
            rig.link.Push("VIDEO PROC AMP:\nGain: " + number + "\nHue: " + number + "\n\nVIDEO ADJUST:\nRed: " +
                          number + "\nLuma low: " + number + "\n\nMORQUIL DEVICE:\nModel name: Device " + number +
                          "\n\nVIDEO PROC AMP AVAILABILITY:\nGain range: -" + number + " " + number + "\n\n");
        }
    }
    bool IsOver() const {
        int gain = 0;
        rig.ProcAmp()->GetGain(&gain);
        return gain == floodedBlocks;
    }

    CountingObserver spring;
    DeviceRig rig;
};

TEST_F(DeviceInAFlood, IsReadBySeveralThreads) {
    Flood();
    auto* const procAmp = rig.ProcAmp();
    const Threads hosts(4, [&] {
        int last = 0;
        for (int gain = 0; gain != floodedBlocks;) {
            EXPECT_EQ(procAmp->GetGain(&gain), S_OK);
            EXPECT_GE(gain, last) << "the mirror went back in time";
            last = gain;
            int min = 0;
            int max = 0;
            EXPECT_EQ(procAmp->GetGainRange(&min, &max), S_OK);
            EXPECT_EQ(min, -max);
            BSTR name = nullptr;
            EXPECT_EQ(rig.device->GetDeviceName(&name), S_OK);
            SysFreeString(name);
            LONG supported = 0;
            rig.device->GetNetworkUpdateSupported(&supported);
        }
    });
}

TEST_F(DeviceInAFlood, IsSetAndObservedBySeveralThreads) {
    CountingObserver shared;
    rig.device->AddPropertyObserver(&shared, morquilVideoProcAmpPropertySetId);
    Flood();
    {
        std::atomic<int> thread = 0;
        const Threads hosts(4, [&] {
            const int which = thread++;
            CountingObserver own;
            auto* const color = rig.Feature<IMorquilColorCorrection>(IID_IMorquilColorCorrection);
            for (int count = 0; count < 300; ++count) {
                const bool adds = which % 2 == 0;
                EXPECT_TRUE(!adds || rig.device->AddPropertyObserver(&own, morquilVideoProcAmpPropertySetId) == S_OK);
                EXPECT_EQ(rig.ProcAmp()->SetBlackLevel(count), S_OK);
                EXPECT_EQ(color->SetGreen(count), S_OK);
                EXPECT_TRUE(!adds ||
                            rig.device->RemovePropertyObserver(&own, morquilVideoProcAmpPropertySetId) == S_OK);
            }
            EXPECT_EQ(own.references, 1U);
        });
    }
    EXPECT_TRUE(rig.link.AwaitIdle());
    EXPECT_TRUE(IsOver());
    EXPECT_GE(shared.calls, floodedBlocks);
    EXPECT_EQ(rig.device->RemovePropertyObserver(&shared, morquilVideoProcAmpPropertySetId), S_OK);
    EXPECT_EQ(shared.references, 1U);
    EXPECT_NE(rig.link.Sent().find("Green: 299\n"), std::string::npos);
}

/// Long enough for several threads to run at once.
void AddAndRelease(CMorquilDevice* device) {
    for (int times = 0; times < 5000; ++times) {
        EXPECT_GT(device->AddRef(), 1U);
        EXPECT_GT(device->Release(), 0U);
    }
}

/// What one of many hosts does with a device until it releases its reference. Each round sees a newer gain than the one
/// before, so that the device floods all the time. Returns: the remaining count.
ULONG UseAndRelease(CMorquilDevice* device, CountingObserver& observer, int rounds) {
    AddAndRelease(device);
    int last = 0;
    for (int round = 0; round < rounds; ++round) {
        void* feature = nullptr;
        EXPECT_EQ(device->QueryInterface(IID_IMorquilVideoProcAmp, &feature), S_OK);
        auto* const procAmp = static_cast<IMorquilVideoProcAmp*>(feature);
        int gain = last;
        while (gain == last && procAmp->GetGain(&gain) == S_OK) {
            std::this_thread::yield();
        }
        EXPECT_GT(gain, last) << "the mirror went back in time";
        last = gain;
        EXPECT_EQ(procAmp->SetBlackLevel(round), S_OK);
        EXPECT_EQ(device->SetPanelLock(round % 2), S_OK);
        EXPECT_GT(procAmp->Release(), 0U);
        EXPECT_EQ(device->AddPropertyObserver(&observer, morquilVideoProcAmpPropertySetId), S_OK);
        EXPECT_EQ(device->RemovePropertyObserver(&observer, morquilVideoProcAmpPropertySetId), S_OK);
    }
    EXPECT_EQ(device->AddPropertyObserver(&observer, morquilVideoProcAmpPropertySetId), S_OK);
    return device->Release();
}

TEST_F(DeviceInAFlood, IsReleasedByTheLastOfManyThreads) {
    constexpr std::size_t hostCount = 8;
    const Watchdog watchdog;
    CMorquilDevice* const device = rig.device;
    FloodUntilItIsReleased();
    for (std::size_t host = 0; host < hostCount; ++host) {
        device->AddRef();
    }
    EXPECT_EQ(rig.Release(), hostCount);
    std::array<CountingObserver, hostCount> observers;
    std::atomic<std::size_t> started = 0;
    std::atomic<int> zeroes = 0;
    {
        const Threads hosts(hostCount, [&] {
            const std::size_t host = started.fetch_add(1, std::memory_order_relaxed);
            const ULONG remaining = UseAndRelease(device, observers[host], 2 * static_cast<int>(host + 1));
            zeroes.fetch_add(remaining == 0 ? 1 : 0, std::memory_order_relaxed);
        });
    }
    EXPECT_EQ(zeroes, 1);
    EXPECT_TRUE(rig.link.AwaitDestroyed());
    EXPECT_EQ(spring.references, 1U);
    for (const CountingObserver& observer : observers) {
        EXPECT_EQ(observer.references, 1U);
    }
}

TEST_F(DeviceInAFlood, IsDisconnectedUnderItsReaders) {
    Flood();
    const Threads hosts(4, [&] {
        int gain = 0;
        while (rig.ProcAmp()->GetGain(&gain) == S_OK) {
            LONG lock = 0;
            rig.device->GetPanelLock(&lock);
            rig.device->SetPanelLock(gain % 2);
        }
    });
    EXPECT_EQ(rig.device->Disconnect(), S_OK);
    EXPECT_FALSE(rig.KnowsDevice());
}

}  // namespace
}  // namespace Morquil
