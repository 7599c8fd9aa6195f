// References that several threads add and release at once are all counted.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "MorquilEntry.h"
#include "device/device.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

constexpr ULONG turns = 1500;

ULONG CountOf(IUnknown& object) {
    object.AddRef();
    return object.Release();
}

void Take(IUnknown& object, ULONG references) {
    for (ULONG count = 0; count < references; ++count) {
        object.AddRef();
    }
}

/// One thread adds and releases a reference all the time. Another adds one now and then, each time at a different point
/// of the first one's work: a count that either changes in two steps, a load and a store, loses some of them. The
/// pauses make the second interrupt the first if they share a processor.
void ExpectEveryReferenceIsCounted(IUnknown& object) {
    const ULONG before = CountOf(object);
    Take(object, turns);  // a count that is wrong must not destroy the object
    std::atomic<bool> isOver = false;
    std::thread busy([&] {
        while (!isOver) {
            object.AddRef();
            object.Release();
        }
    });
    for (ULONG turn = 0; turn < turns; ++turn) {
        object.AddRef();
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    isOver = true;
    busy.join();
    EXPECT_EQ(CountOf(object), before + 2 * turns);
    while (CountOf(object) > before) {
        object.Release();
    }
}

TEST(References, OfADeviceAreCountedOneByOne) {
    DeviceRig rig;
    ExpectEveryReferenceIsCounted(*rig.device);
}

TEST(References, OfTheDiscoveryObjectAreCountedOneByOne) {
    IMorquilDiscovery* const discovery = GetMorquilDiscoveryInstance_0000();
    ExpectEveryReferenceIsCounted(*discovery);
    discovery->Release();
}

}  // namespace
}  // namespace Morquil
