#include "core/condition.h"

#include <gtest/gtest.h>

#include <thread>

#include "core/lock.h"
#include "tests/kit/threads.h"

namespace QRN::Core {
namespace {

struct Gate {
    void Open() {
        const Lock lock(lockable);
        open = true;
        changed.WakeAll();
    }
    void Pass() {
        const Lock lock(lockable);
        ++waiting;
        changed.WakeAll();
        while (!open) {
            changed.Wait(lockable);
        }
        ++passed;
    }
    void AwaitWaiting(int count) {
        const Lock lock(lockable);
        while (waiting < count) {
            changed.Wait(lockable);
        }
    }
    int Passed() {
        const Lock lock(lockable);
        return passed;
    }

    Lockable lockable;
    Condition changed;
    bool open GUARDED_BY(lockable) = false;
    int waiting GUARDED_BY(lockable) = 0;
    int passed GUARDED_BY(lockable) = 0;
};

TEST(Condition, ReleasesTheLockWhileWaitingAndWakesEveryThread) {
    Gate gate;
    {
        const Morquil::Testing::Threads threads(3, [&] { gate.Pass(); });
        gate.AwaitWaiting(3);
        EXPECT_EQ(gate.Passed(), 0);
        gate.Open();
    }
    EXPECT_EQ(gate.Passed(), 3);
}

TEST(Condition, HoldsTheLockAgainAfterWaiting) {
    Gate gate;
    std::thread waiter([&] { gate.Pass(); });
    gate.AwaitWaiting(1);
    {
        const Lock lock(gate.lockable);
        gate.open = true;
        gate.changed.WakeAll();
        EXPECT_EQ(gate.passed, 0);
    }
    waiter.join();
    EXPECT_EQ(gate.Passed(), 1);
}

}  // namespace
}  // namespace QRN::Core
