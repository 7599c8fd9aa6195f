// Memory, descriptors, threads and name resolution that fail while a host connects to a device on the network.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "MorquilEntry.h"
#include "tests/kit/owned_bstr.h"
#include "tests/kit/scripted_device.h"
#include "tests/kit/watchdog.h"
#include "tests/unit/device/device_texts.h"
#include "tests/worlds/allocation/exempt_observers.h"
#include "tests/worlds/allocation/holdings.h"
#include "tests/worlds/allocation/scarce_memory.h"

namespace Morquil::Testing {
namespace {

/// Everything that can fail: the device object, its transport and its connection, two threads, fifteen messages and
/// their texts.
constexpr long leastFailures = 30;

/// A device that answers at its own address, on a thread whose memory never runs out.
class AnsweringDevice {
public:
    AnsweringDevice() {
        device_.Do([] { static thread_local const Exempt always; });
    }

    BSTR Address() const { return address_.Get(); }
    bool AwaitHostGone() { return device_.AwaitHostGone(); }

private:
    ScriptedDevice device_{{.greeting = GreetingText(), .respond = DeviceAnswer}};
    const OwnedBstr address_{Utf16(device_.Address().begin(), device_.Address().end())};
};

/// A failed call of the host has one of these results.
void ExpectConnectResult(HRESULT result, HRESULT success) {
    EXPECT_TRUE(result == success || (result == E_FAIL && ScarceMemory::HasRunOut())) << std::hex << result;
}

bool KnowsName(IMorquilDevice* device) {
    BSTR name = nullptr;
    const HRESULT result = InTheLibrary([&] { return device->GetDeviceName(&name); });
    const OwnedBstr owner(name);
    return result == S_OK;
}

void Release(IMorquilDiscovery* discovery, IMorquilDevice* device) {
    if (device != nullptr) {
        EXPECT_EQ(InTheLibrary([&] { return discovery->Disconnect(device); }), S_OK);
        InTheLibrary([&] { return device->Release(); });
    }
}

void ConnectAndWait(IMorquilDiscovery* discovery, BSTR address) {
    IMorquilDevice* device = nullptr;
    _MorquilConnectToFailure reason{};
    const HRESULT result = InTheLibrary([&] { return discovery->Connect(address, &device, &reason); });
    ExpectConnectResult(result, S_OK);
    EXPECT_EQ(device != nullptr, result == S_OK);
    EXPECT_TRUE(device == nullptr || KnowsName(device) || ScarceMemory::HasRunOut());
    Release(discovery, device);
}

/// Sets something and waits until the device has answered, or the host has been notified that the connection has ended.
void Use(IMorquilDevice* device, const ExemptConnectionObserver& observer) {
    void* out = nullptr;
    ASSERT_EQ(device->QueryInterface(IID_IMorquilVideoProcAmp, &out), S_OK);
    auto* const amp = static_cast<IMorquilVideoProcAmp*>(out);
    const HRESULT set = InTheLibrary([&] { return amp->SetGain(7); });
    // E_FAIL if the connection thread has no wake-up.
    const bool isFailure = set == E_OUTOFMEMORY || set == E_FAIL;
    EXPECT_TRUE(set == S_OK || (isFailure && ScarceMemory::HasRunOut())) << std::hex << set;
    const auto isOver = [&] {
        const std::vector<std::string> notifications = observer.Notifications();
        int gain = 0;
        return std::find(notifications.begin(), notifications.end(), "disconnected") != notifications.end() ||
               (amp->GetGain(&gain) == S_OK && gain == 7);
    };
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(4);
    while (set == S_OK && !isOver() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(set != S_OK || isOver());
    amp->Release();
}

void ConnectAndBeNotified(IMorquilDiscovery* discovery, BSTR address) {
    Held<ExemptConnectionObserver> observer;
    IMorquilDevice* device = nullptr;
    const HRESULT result = InTheLibrary([&] { return discovery->ConnectAsync(address, &device, observer.Get()); });
    ExpectConnectResult(result, S_OK);
    EXPECT_EQ(device != nullptr, result == S_OK);
    if (result == S_OK) {
        EXPECT_TRUE(observer->AwaitNotified(1));
        EXPECT_TRUE(observer->Notifications().front() == "connected" || ScarceMemory::HasRunOut());
        Use(device, *observer.Get());
    }
    Release(discovery, device);
    EXPECT_TRUE(observer->AwaitReferences(1));
}

using Way = void (*)(IMorquilDiscovery* discovery, BSTR address);

/// Returns whether anything has failed.
bool RunWay(Way connect, BSTR address, long index, bool lasting) {
    const Watchdog watchdog;
    const ScarceMemory memory(index, lasting);
    IMorquilDiscovery* const discovery = InTheLibrary([] { return GetMorquilDiscoveryInstance_0000(); });
    if (discovery != nullptr) {
        connect(discovery, address);
        EXPECT_EQ(discovery->Release(), 0U);
    } else {
        EXPECT_TRUE(ScarceMemory::HasRunOut());
    }
    return ScarceMemory::HasRunOut();
}

class RealConnection : public testing::TestWithParam<std::tuple<Way, bool>> {};

TEST_P(RealConnection, HasAStatedOutcomeAndLeavesNothingBehindWhateverFails) {
    const Exempt test;
    const auto [way, lasting] = GetParam();
    AnsweringDevice device;
    EXPECT_FALSE(RunWay(way, device.Address(), ScarceMemory::never, false));
    ASSERT_TRUE(device.AwaitHostGone());
    Holdings before;
    long index = 0;
    for (bool hasFailed = true; hasFailed; ++index) {
        hasFailed = RunWay(way, device.Address(), index, lasting);
        ASSERT_EQ(LeakedSince(before), "") << "when allocation " << index << " fails";
        ASSERT_FALSE(HasFailure()) << "when allocation " << index << " fails";
    }
    EXPECT_GT(index, leastFailures);
    RecordProperty("Allocations", static_cast<int>(index - 1));
}

std::string WayAndHowLong(const testing::TestParamInfo<std::tuple<Way, bool>>& test) {
    const auto [way, lasting] = test.param;
    return std::string(way == ConnectAndWait ? "Connect" : "ConnectAsync") + (lasting ? "FromThenOn" : "Once");
}

INSTANTIATE_TEST_SUITE_P(Memory, RealConnection,
                         testing::Combine(testing::Values(&ConnectAndWait, &ConnectAndBeNotified), testing::Bool()),
                         WayAndHowLong);

}  // namespace
}  // namespace Morquil::Testing
