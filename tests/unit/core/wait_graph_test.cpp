#include "core/wait_graph.h"

#include <gtest/gtest.h>

#include <chrono>
#include <list>
#include <memory>
#include <thread>

#include "core/event.h"

namespace QRN::Core {
namespace {

// A thread that registers and ends a wait for another one on command.
class Waiter {
public:
    Waiter() {
        for (Event* event : {&known_, &begin_, &begun_, &end_}) {
            event->Create();
        }
        thread_ = std::thread([this] { Run(); });
        Await(known_);
    }
    ~Waiter() {
        begin_.Set();
        end_.Set();
        Join();
    }

    ThreadId Id() const { return id_; }
    bool WaitsCircularlyFor(ThreadId target) {
        target_ = target;
        begin_.Set();
        Await(begun_);
        return circular_;
    }
    void StopWaiting() {
        end_.Set();
        Join();
    }

private:
    static void Await(Event& event) {
        bool timedOut = false;
        event.Wait(-1, timedOut);
    }
    void Run() {
        id_ = CurrentThreadId();
        known_.Set();
        Await(begin_);
        const JoinScope scope(target_);
        circular_ = scope.IsCircular();
        begun_.Set();
        Await(end_);
    }
    void Join() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    Event known_;
    Event begin_;
    Event begun_;
    Event end_;
    ThreadId id_ = 0;
    ThreadId target_ = 0;
    bool circular_ = false;
    std::thread thread_;
};

TEST(JoinScope, IsNotCircularForAThreadThatDoesNotWait) {
    Waiter other;
    const JoinScope scope(other.Id());
    EXPECT_FALSE(scope.IsCircular());
}

TEST(JoinScope, IsNotCircularForNoThread) {
    const JoinScope scope(0);
    EXPECT_FALSE(scope.IsCircular());
}

TEST(JoinScope, IsCircularForTheThreadItself) {
    const JoinScope scope(CurrentThreadId());
    EXPECT_TRUE(scope.IsCircular());
}

TEST(JoinScope, IsCircularForTheSecondOfTwoThreadsThatWaitForEachOther) {
    Waiter other;
    EXPECT_FALSE(other.WaitsCircularlyFor(CurrentThreadId()));
    const JoinScope scope(other.Id());
    EXPECT_TRUE(scope.IsCircular());
}

TEST(JoinScope, IsCircularForTheThreadThatClosesALongCircle) {
    Waiter first;
    Waiter second;
    Waiter third;
    EXPECT_FALSE(third.WaitsCircularlyFor(CurrentThreadId()));
    EXPECT_FALSE(first.WaitsCircularlyFor(second.Id()));
    EXPECT_FALSE(second.WaitsCircularlyFor(third.Id()));
    const JoinScope scope(first.Id());
    EXPECT_TRUE(scope.IsCircular());
}

TEST(JoinScope, IsNotCircularForALongChain) {
    Waiter first;
    Waiter second;
    Waiter third;
    EXPECT_FALSE(first.WaitsCircularlyFor(second.Id()));
    EXPECT_FALSE(second.WaitsCircularlyFor(third.Id()));
    const JoinScope scope(first.Id());
    EXPECT_FALSE(scope.IsCircular());
}

TEST(JoinScope, IsNotCircularWhenSeveralThreadsWaitForOne) {
    Waiter first;
    Waiter second;
    EXPECT_FALSE(first.WaitsCircularlyFor(second.Id()));
    const JoinScope scope(second.Id());
    EXPECT_FALSE(scope.IsCircular());
}

TEST(JoinScope, CountsEveryWaitOfAThreadThatHasSeveral) {
    Waiter first;
    Waiter second;
    const JoinScope waitsForFirst(first.Id());
    const JoinScope waitsForSecond(second.Id());
    EXPECT_TRUE(first.WaitsCircularlyFor(CurrentThreadId()));
    EXPECT_TRUE(second.WaitsCircularlyFor(CurrentThreadId()));
}

TEST(JoinScope, CountsTheOtherWaitsOfAThreadWhoseLatestIsOver) {
    Waiter first;
    Waiter second;
    const JoinScope waitsForFirst(first.Id());
    { const JoinScope waitsForSecond(second.Id()); }
    EXPECT_FALSE(second.WaitsCircularlyFor(first.Id()));
    EXPECT_TRUE(first.WaitsCircularlyFor(CurrentThreadId()));
}

TEST(JoinScope, IsForgottenWhenTheWaitIsOver) {
    Waiter other;
    const ThreadId id = other.Id();
    EXPECT_FALSE(other.WaitsCircularlyFor(CurrentThreadId()));
    other.StopWaiting();
    const JoinScope scope(id);
    EXPECT_FALSE(scope.IsCircular());
}

TEST(JoinScope, ThatIsCircularDoesNotWait) {
    Waiter other;
    auto circular = std::make_unique<JoinScope>(CurrentThreadId());
    EXPECT_TRUE(circular->IsCircular());
    EXPECT_FALSE(other.WaitsCircularlyFor(CurrentThreadId()));
    circular.reset();
    const JoinScope scope(other.Id());
    EXPECT_TRUE(scope.IsCircular());
}

TEST(JoinScope, FindsItsWayThroughThousandsOfWaitsInTimeInProportionToThem) {
    constexpr ThreadId waits = 3000;
    const auto begin = std::chrono::steady_clock::now();
    std::list<JoinScope> scopes;
    for (ThreadId wait = 0; wait < waits; ++wait) {
        const ThreadId target = ~wait;  // no thread's
        EXPECT_FALSE(scopes.emplace_back(target).IsCircular());
    }
    Waiter other;
    EXPECT_FALSE(other.WaitsCircularlyFor(CurrentThreadId()));
    EXPECT_TRUE(JoinScope(other.Id()).IsCircular());
    // Trying all pairs of waits takes half a minute.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

}  // namespace
}  // namespace QRN::Core
