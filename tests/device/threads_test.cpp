// Many host threads use one device object while the device floods it. Run under a thread sanitizer this also shows that
// the mirror is read and written without a race; so nothing here makes the host's threads take a lock of the test's.
#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "device/device.h"
#include "tests/core/threads.h"
#include "tests/device/device_rig.h"

namespace Morquil {
namespace {

using QRN::Core::Testing::Threads;
using namespace Testing;

/// Counts references and calls, and takes no lock.
class CountingObserver final : public IMorquilPropertyObserver {
public:
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return references.fetch_add(1, std::memory_order_relaxed) + 1; }
    STDMETHODIMP_(ULONG) Release() override { return references.fetch_sub(1, std::memory_order_relaxed) - 1; }
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId) override {
        calls.fetch_add(1, std::memory_order_relaxed);
        return S_OK;
    }

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
