// Many threads of a host share one device that floods them; the last of them ends the connection.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/threads.h"
#include "tests/kit/watchdog.h"
#include "tests/system/host/flood.h"
#include "tests/system/host/host.h"

namespace Morquil::Testing {
namespace {

constexpr std::size_t threadCount = 8;
constexpr int setBlack = 6;
constexpr int readGain = 4;

/// Long enough for several threads to run at once.
void AddAndRelease(const RawObject& device) {
    for (int times = 0; times < 5000; ++times) {
        EXPECT_GT(device.AddRef(), 1U);
        EXPECT_GT(device.ReleaseOne(), 0U);
    }
}

/// Each round sees a newer gain than the one before, so that the device floods all the time.
void UseInAFlood(const RawObject& device, PropertyObserver& observer, int rounds) {
    AddAndRelease(device);
    std::int32_t last = 0;
    for (int round = 0; round < rounds; ++round) {
        const RawObject amp = device.QueryInterface(Iid::videoProcAmp);
        ASSERT_TRUE(amp);
        std::int32_t gain = last;
        while (gain == last && amp.Call(readGain, &gain) == ok) {
            std::this_thread::yield();
        }
        EXPECT_GT(gain, last) << "the mirror went back in time";
        last = gain;
        EXPECT_EQ(amp.Call(setBlack, round), ok);
        EXPECT_EQ(DeviceName(device), u"Scripted");
        EXPECT_EQ(device.Call(Slot::addPropertyObserver, observer.Get(), FourCharacters("vpap")), ok);
        EXPECT_EQ(device.Call(Slot::removePropertyObserver, observer.Get(), FourCharacters("vpap")), ok);
    }
    EXPECT_EQ(device.Call(Slot::addPropertyObserver, observer.Get(), FourCharacters("vpap")), ok);
}

TEST(ManyThreads, UseADeviceInAFloodUntilTheLastOfThemReleasesIt) {
    const Watchdog watchdog;
    std::array<PropertyObserver, threadCount> observers;
    ScriptedDevice device(CompleteDevice());
    RawObject object = Connect(device.Address()).device;
    ASSERT_TRUE(object);
    const Flood flood(device);
    for (std::size_t thread = 0; thread < threadCount; ++thread) {
        object.AddRef();
    }
    void* const shared = object.Get();
    EXPECT_EQ(object.Release(), threadCount);
    std::atomic<std::size_t> started = 0;
    std::atomic<int> zeroes = 0;
    {
        const Morquil::Testing::Threads hosts(threadCount, [&] {
            const std::size_t thread = started++;
            RawObject own(shared);
            UseInAFlood(own, observers[thread], 2 * static_cast<int>(thread + 1));
            zeroes += WithinASecond([&] { return own.Release(); }) == 0 ? 1 : 0;
        });
    }
    EXPECT_EQ(zeroes, 1);
    EXPECT_TRUE(device.AwaitHostGone());
    for (PropertyObserver& observer : observers) {
        EXPECT_TRUE(observer.AwaitRelease());
    }
}

}  // namespace
}  // namespace Morquil::Testing
