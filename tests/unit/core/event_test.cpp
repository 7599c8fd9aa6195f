#include "core/event.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include "core/lock.h"
#include "tests/kit/threads.h"

namespace QRN::Core {
namespace {

using Clock = std::chrono::steady_clock;

class EventTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(event.Create(), 0U); }

    bool IsSignalled() {
        bool timedOut = false;
        EXPECT_EQ(event.Wait(0, timedOut), 0U);
        return !timedOut;
    }

    Event event;
};

TEST(Event, FailsBeforeItIsCreated) {
    Event event;
    bool timedOut = true;
    bool wasSet = true;
    EXPECT_EQ(event.Wait(-1, timedOut), 6U);
    EXPECT_FALSE(timedOut);
    EXPECT_EQ(event.Set(), 6U);
    EXPECT_EQ(event.Set(&wasSet), 6U);
    EXPECT_FALSE(wasSet);
}

TEST(Event, IsALockable) {
    const std::unique_ptr<Lockable> event = std::make_unique<Event>();
    std::uint32_t error = 77;
    const Lock lock(*event, error);
    EXPECT_EQ(error, 0U);
}

TEST_F(EventTest, IsNotSignalledWhenCreated) {
    EXPECT_FALSE(IsSignalled());
}

TEST_F(EventTest, IsNotSignalledWhenCreatedAgain) {
    event.Set();
    EXPECT_EQ(event.Create(), 0U);
    EXPECT_FALSE(IsSignalled());
}

TEST_F(EventTest, KeepsItsSignalThroughWaits) {
    EXPECT_EQ(event.Set(), 0U);
    EXPECT_TRUE(IsSignalled());
    EXPECT_TRUE(IsSignalled());
    bool timedOut = true;
    EXPECT_EQ(event.Wait(-1, timedOut), 0U);
    EXPECT_FALSE(timedOut);
}

TEST_F(EventTest, ReportsWhetherItWasSignalledBefore) {
    bool wasSet = true;
    EXPECT_EQ(event.Set(&wasSet), 0U);
    EXPECT_FALSE(wasSet);
    EXPECT_EQ(event.Set(&wasSet), 0U);
    EXPECT_TRUE(wasSet);
    EXPECT_TRUE(IsSignalled());
}

TEST_F(EventTest, OnlyTestsForLessThanAMillisecond) {
    bool timedOut = false;
    auto shortest = Clock::duration::max();
    for (int round = 0; round < 1000; ++round) {
        const auto begin = Clock::now();
        EXPECT_EQ(event.Wait(999, timedOut), 0U);
        shortest = std::min(shortest, Clock::now() - begin);
        EXPECT_TRUE(timedOut);
    }
    // A busy machine delays some of them, but never all.
    EXPECT_LT(shortest, std::chrono::microseconds(900));
}

TEST_F(EventTest, WaitsAsLongAsAsked) {
    bool timedOut = false;
    const auto begin = Clock::now();
    EXPECT_EQ(event.Wait(50'999, timedOut), 0U);
    EXPECT_TRUE(timedOut);
    // The system may count in ticks of 16 ms.
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(30));
}

TEST_F(EventTest, WakesEveryWaitingThread) {
    std::atomic<int> woken{0};
    {
        const Morquil::Testing::Threads threads(3, [&] {
            bool timedOut = true;
            woken += event.Wait(-1, timedOut) == 0 && !timedOut ? 1 : 0;
        });
        EXPECT_EQ(event.Set(), 0U);
    }
    EXPECT_EQ(woken, 3);
}

TEST_F(EventTest, CanBeSetWhileAnotherThreadWaitsWithATimeOut) {
    bool timedOut = true;
    std::thread waiter([&] { EXPECT_EQ(event.Wait(10'000'000, timedOut), 0U); });
    EXPECT_EQ(event.Set(), 0U);
    waiter.join();
    EXPECT_FALSE(timedOut);
}

TEST_F(EventTest, ReportsToExactlyOneOfSeveralThreadsThatItWasFirst) {
    std::atomic<int> firsts{0};
    {
        const Morquil::Testing::Threads threads(4, [&] {
            bool wasSet = true;
            EXPECT_EQ(event.Set(&wasSet), 0U);
            firsts += wasSet ? 0 : 1;
        });
    }
    EXPECT_EQ(firsts, 1);
}

}  // namespace
}  // namespace QRN::Core
