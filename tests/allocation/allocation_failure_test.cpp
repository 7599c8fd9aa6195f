// Memory that runs out anywhere in the life of a device: every call has its result, the host is told of the end, and
// nothing is left over.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "MorquilEntry.h"
#include "device/device.h"
#include "tests/allocation/exempt_comms.h"
#include "tests/allocation/scarce_memory.h"
#include "tests/device/device_texts.h"
#include "tests/device/recording_observers.h"
#include "tests/platform/owned_bstr.h"
#include "tests/support/fake_comms.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/watchdog.h"

namespace Morquil {
namespace {

using namespace Testing;
using Test::Exempt;
using Test::ExemptComms;
using Test::OwnedBstr;
using Test::ScarceMemory;
using Test::Utf16;

// Told on the library's threads, and in need of memory of their own.
class ExemptConnectionObserver final : public RecordingObserver<IMorquilConnectionObserver> {
public:
    STDMETHODIMP Connected() override {
        const Exempt test;
        return Note("connected");
    }
    STDMETHODIMP Disconnected(_MorquilConnectToFailure /*reason*/) override {
        const Exempt test;
        return Note("disconnected");
    }
};

class ExemptPropertyObserver final : public RecordingObserver<IMorquilPropertyObserver> {
public:
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId /*id*/) override {
        const Exempt test;
        return Note("changed");
    }
};

/// Runs `call` as a host, on memory that may run out.
template <class Call>
HRESULT InTheLibrary(Call call) {
    const Exempt library(false);
    return call();
}

template <class Interface>
Interface* FeatureOf(CMorquilDevice& device, const IID& iid) {
    void* out = nullptr;
    EXPECT_EQ(device.QueryInterface(iid, &out), S_OK);
    return static_cast<Interface*>(out);
}

/// One setter of each kind.
std::vector<HRESULT> Set(CMorquilDevice& device, const OwnedBstr& text) {
    auto* const amp = FeatureOf<IMorquilVideoProcAmp>(device, IID_IMorquilVideoProcAmp);
    auto* const output = FeatureOf<IMorquilOutputConfiguration>(device, IID_IMorquilOutputConfiguration);
    auto* const geometry = FeatureOf<IMorquilVariableAspectRatio>(device, IID_IMorquilVariableAspectRatio);
    auto* const audio = FeatureOf<IMorquilAudioMapping>(device, IID_IMorquilAudioMapping);
    auto* const network = FeatureOf<IMorquilNetworkConfig>(device, IID_IMorquilNetworkConfig);
    auto* const preset = FeatureOf<IMorquilPreset>(device, IID_IMorquilPreset);
    auto* const timecode = FeatureOf<IMorquilTimecode>(device, IID_IMorquilTimecode);
    std::vector<HRESULT> results;
    const auto note = [&](auto call) {
        const HRESULT result = InTheLibrary(call);
        results.push_back(result);
    };
    note([&] { return amp->SetGain(3); });
    note([&] { return amp->ResetAll(); });
    note([&] { return output->SetVideoMode(morquilAPIVideoMode720p50); });
    note([&] { return geometry->SetSizeX(0.5); });
    note([&] { return audio->SetAudioGain(-3); });
    note([&] { return audio->SetAudioMap(3, morquilAudSelMute); });
    note([&] { return network->SetFriendlyName(text.Get()); });
    note([&] { return preset->SavePreset(1); });
    note([&] { return timecode->StartTimecode(); });
    note([&] { return device.SetPanelLock(1); });
    for (IUnknown* const used :
         {static_cast<IUnknown*>(amp), static_cast<IUnknown*>(output), static_cast<IUnknown*>(geometry),
          static_cast<IUnknown*>(audio), static_cast<IUnknown*>(network), static_cast<IUnknown*>(preset),
          static_cast<IUnknown*>(timecode)}) {
        used->Release();
    }
    return results;
}

void ExpectStated(HRESULT result) {
    const std::set<HRESULT> stated{S_OK, S_FALSE, E_OUTOFMEMORY, E_FAIL};
    EXPECT_TRUE(stated.count(result)) << std::hex << result;
}

/// A device from its creation to its end, while memory runs out somewhere. Returns whether it did.
bool Live(long index, bool lasting) {
    SCOPED_TRACE(index);
    const Watchdog watchdog;
    const Test::TemporaryFolder folder;
    const OwnedBstr address{Utf16{OLESTR("a-device-whose-name-is-long.test")}};
    const OwnedBstr text{Utf16{OLESTR("a name that is longer than what a small text holds")}};
    const std::string file = folder.PathOf("settings.txt");
    const OwnedBstr path{Utf16(file.begin(), file.end())};
    FakeConnection link;
    link.AnswerWith(DeviceAnswer);
    link.Push(GreetingText());
    Held<ExemptConnectionObserver> connectionObserver;
    Held<ExemptPropertyObserver> propertyObserver;
    Held<ExemptPropertyObserver> laterObserver;
    bool hasRunOut = false;
    {
        const ScarceMemory memory(index, lasting);
        CMorquilDevice* device = nullptr;
        {
            auto comms = std::make_unique<ExemptComms>(link.MakeComms());
            const Exempt library(false);
            try {
                device = new CMorquilDevice(std::move(comms), CMorquilDevice::initialStateLimit);
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(ScarceMemory::HasRunOut());
            }
        }
        if (device != nullptr) {
            ExpectStated(InTheLibrary(
                [&] { return device->AddPropertyObserver(propertyObserver.Get(), morquilVideoProcAmpPropertySetId); }));
            _MorquilConnectToFailure reason{};
            const HRESULT connected =
                InTheLibrary([&] { return device->Connect(address.Get(), connectionObserver.Get(), &reason); });
            ExpectStated(connected);
            if (SUCCEEDED(connected)) {
                // One of the two is told, whatever happens.
                EXPECT_TRUE(connectionObserver->AwaitTold(1));
            }
            for (const HRESULT result : Set(*device, text)) {
                ExpectStated(result);
            }
            ExpectStated(InTheLibrary(
                [&] { return device->AddPropertyObserver(laterObserver.Get(), morquilNoiseReductionPropertySetId); }));
            link.Push("NOISE REDUCTION:\nBias: 3\n\nVIDEO PROC AMP:\nGain: 5\n\n");
            ExpectStated(InTheLibrary([&] { return device->SaveSettingsFile(path.Get()); }));
            ExpectStated(InTheLibrary([&] { return device->LoadSettingsFile(path.Get()); }));
            BSTR name = nullptr;
            ExpectStated(InTheLibrary([&] { return device->GetDeviceName(&name); }));
            SysFreeString(name);
            EXPECT_EQ(InTheLibrary([&] { return device->Disconnect(); }), S_OK);
            InTheLibrary([&] { return static_cast<HRESULT>(device->Release()); });
        }
        EXPECT_TRUE(link.AwaitDestroyed());
        EXPECT_TRUE(connectionObserver->AwaitReferences(1));
        EXPECT_TRUE(propertyObserver->AwaitReferences(1));
        EXPECT_TRUE(laterObserver->AwaitReferences(1));
        hasRunOut = ScarceMemory::HasRunOut();
    }
    return hasRunOut;
}

class AllocationFailure : public testing::TestWithParam<bool> {};

TEST_P(AllocationFailure, AnywhereInTheLifeOfADeviceHasAStatedOutcome) {
    const Exempt test;
    Live(1'000'000, false);  // what is made once in a program is there now
    long index = 0;
    for (; Live(index, GetParam()); ++index) {
        if (HasFailure()) {
            FAIL() << "when allocation " << index << " fails";
        }
    }
    EXPECT_GT(index, 50);
    RecordProperty("Allocations", static_cast<int>(index));
}

TEST(AllocationFailureAnywhere, LeavesNothingBehind) {
    const Exempt test;
    Live(1'000'000, false);
    const long before = Morquil::Test::LiveAllocations();
    for (long index = 0; index < 400; index += 7) {
        Live(index, false);
        ASSERT_EQ(Morquil::Test::LiveAllocations(), before) << "when allocation " << index << " fails";
    }
}

TEST(AllocationFailureAnywhere, LetsTheDiscoveryAnswerThatItCannotConnect) {
    const Exempt test;
    IMorquilDiscovery* const discovery = GetMorquilDiscoveryInstance_0000();
    const OwnedBstr noAddress{Utf16{}};
    bool hasRunOut = true;
    for (long index = 0; hasRunOut; ++index) {
        const ScarceMemory memory(index, false);
        IMorquilDevice* device = nullptr;
        _MorquilConnectToFailure reason{};
        EXPECT_EQ(InTheLibrary([&] { return discovery->Connect(noAddress.Get(), &device, &reason); }), E_FAIL);
        EXPECT_EQ(device, nullptr);
        hasRunOut = ScarceMemory::HasRunOut();
    }
    EXPECT_EQ(discovery->Release(), 0U);
}

std::string HowOften(const testing::TestParamInfo<bool>& test) {
    return test.param ? "FromThenOn" : "Once";
}

INSTANTIATE_TEST_SUITE_P(Memory, AllocationFailure, testing::Bool(), HowOften);

}  // namespace
}  // namespace Morquil
