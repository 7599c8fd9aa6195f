#include "core/lock.h"

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>

#include "core/critical_section.h"
#include "core/static_lock.h"
#include "tests/kit/threads.h"

namespace QRN::Core {
namespace {

constexpr int threadCount = 4;
constexpr int rounds = 5000;

TEST(Lock, ReportsThatItIsHeldByErrorZero) {
    Lockable lockable;
    std::uint32_t error = 77;
    const Lock lock(lockable, error);
    EXPECT_EQ(error, 0U);
}

TEST(Lock, KeepsOtherThreadsOut) {
    Lockable lockable;
    int count = 0;
    {
        const Morquil::Testing::Threads threads(threadCount, [&] {
            for (int round = 0; round < rounds; ++round) {
                const Lock lock(lockable);
                ++count;
            }
        });
    }
    EXPECT_EQ(count, threadCount * rounds);
}

TEST(Lock, LeavesTheLockableAtTheEndOfItsScope) {
    Lockable lockable;
    {
        std::uint32_t error = 0;
        const Lock lock(lockable, error);
    }
    bool entered = false;
    std::thread([&] {
        const Lock lock(lockable);
        entered = true;
    }).join();
    EXPECT_TRUE(entered);
}

void EnterTwice(Lockable& lockable, int& count) NO_THREAD_SAFETY_ANALYSIS {
    const Lock outer(lockable);
    const Lock inner(lockable);
    ++count;
}

TEST(Lockable, MayBeEnteredAgainByItsOwner) {
    Lockable lockable;
    int count = 0;
    {
        const Morquil::Testing::Threads threads(threadCount, [&] {
            for (int round = 0; round < rounds; ++round) {
                EnterTwice(lockable, count);
            }
        });
    }
    EXPECT_EQ(count, threadCount * rounds);
}

TEST(Lockable, AndLockAreDestroyedThroughTheirBases) {
    EXPECT_TRUE(std::has_virtual_destructor_v<Lockable>);
    EXPECT_TRUE(std::has_virtual_destructor_v<Lock>);
}

TEST(CriticalSection, KeepsOtherThreadsOutAndIsRecursive) {
    CriticalSection section;
    EXPECT_EQ(section.Initialise(), 0U);
    int count = 0;
    {
        const Morquil::Testing::Threads threads(threadCount, [&] {
            for (int round = 0; round < rounds; ++round) {
                section.Enter();
                section.Enter();
                ++count;
                section.Leave();
                section.Leave();
            }
        });
    }
    section.Delete();
    EXPECT_EQ(count, threadCount * rounds);
}

TEST(StaticLock, KeepsOtherThreadsOut) {
    static constinit StaticLock lock;
    int count = 0;
    {
        const Morquil::Testing::Threads threads(threadCount, [&] {
            for (int round = 0; round < rounds; ++round) {
                const StaticLockHold hold(lock);
                ++count;
            }
        });
    }
    EXPECT_EQ(count, threadCount * rounds);
}

}  // namespace
}  // namespace QRN::Core
