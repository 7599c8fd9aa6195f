#include "core/thread.h"

#include <gtest/gtest.h>

#include <memory>

#include "core/event.h"
#include "tests/unit/core/failing_allocation.h"

namespace QRN::Core {
namespace {

struct Body {
    Body() { mayEnd.Create(); }
    static std::uint32_t Run(void* argument) {
        Body& body = *static_cast<Body*>(argument);
        bool timedOut = false;
        body.self = CurrentThreadId();
        body.mayEnd.Wait(-1, timedOut);
        return 0xFEDCBA98;
    }

    Event mayEnd;
    ThreadId self = 0;
};

// Runs a `Body` that is shared with the thread, for threads that are not joined.
std::uint32_t RunShared(void* argument) {
    const std::unique_ptr<std::shared_ptr<Body>> body(static_cast<std::shared_ptr<Body>*>(argument));
    return Body::Run(body->get());
}

struct SelfJoiner {
    SelfJoiner() {
        started.Create();
        joined.Create();
    }
    static std::uint32_t Run(void* argument) {
        const std::unique_ptr<std::shared_ptr<SelfJoiner>> owner(static_cast<std::shared_ptr<SelfJoiner>*>(argument));
        SelfJoiner& joiner = **owner;
        bool timedOut = false;
        joiner.started.Wait(-1, timedOut);
        joiner.result = JoinThread(joiner.handle, &joiner.exitCode, CurrentThreadId());
        joiner.joined.Set();
        return 1;
    }

    Event started;
    Event joined;
    ThreadHandle handle;
    std::uint32_t exitCode = 77;
    std::uint32_t result = 77;
};

TEST(Thread, RunsTheFunctionAndReturnsItsResultAsExitCode) {
    Body body;
    ThreadHandle handle;
    ASSERT_EQ(StartThread(handle, &Body::Run, &body), 0U);
    EXPECT_TRUE(handle);
    body.mayEnd.Set();
    std::uint32_t exitCode = 0;
    EXPECT_EQ(JoinThread(handle, &exitCode), 0U);
    EXPECT_EQ(exitCode, 0xFEDCBA98U);
    EXPECT_FALSE(handle);
}

TEST(Thread, ReportsTheIdThatTheThreadSees) {
    Body body;
    ThreadHandle handle;
    ThreadId id = 0;
    ASSERT_EQ(StartThread(handle, &Body::Run, &body, &id), 0U);
    body.mayEnd.Set();
    EXPECT_EQ(JoinThread(handle), 0U);
    EXPECT_EQ(id, body.self);
    EXPECT_NE(id, CurrentThreadId());
}

TEST(Thread, IsWaitedForByAThreadThatIsNotExempt) {
    Body body;
    ThreadHandle handle;
    ThreadId id = 0;
    ASSERT_EQ(StartThread(handle, &Body::Run, &body, &id), 0U);
    body.mayEnd.Set();
    std::uint32_t exitCode = 0;
    EXPECT_EQ(JoinThread(handle, &exitCode, id), 0U);
    EXPECT_EQ(exitCode, 0xFEDCBA98U);
}

TEST(Thread, IsNotWaitedForByTheExemptThread) {
    const auto body = std::make_shared<Body>();
    ThreadHandle handle;
    ASSERT_EQ(StartThread(handle, &RunShared, new std::shared_ptr<Body>(body)), 0U);
    std::uint32_t exitCode = 77;
    // The thread cannot end before `mayEnd`: a join that waited would never return.
    EXPECT_EQ(JoinThread(handle, &exitCode, CurrentThreadId()), 0U);
    EXPECT_EQ(exitCode, 0U);
    EXPECT_FALSE(handle);
    body->mayEnd.Set();
}

TEST(Thread, MayReleaseItsOwnHandle) {
    const auto joiner = std::make_shared<SelfJoiner>();
    ASSERT_EQ(StartThread(joiner->handle, &SelfJoiner::Run, new std::shared_ptr<SelfJoiner>(joiner)), 0U);
    joiner->started.Set();
    bool timedOut = true;
    EXPECT_EQ(joiner->joined.Wait(10'000'000, timedOut), 0U);
    EXPECT_FALSE(timedOut);
    EXPECT_EQ(joiner->result, 0U);
    EXPECT_EQ(joiner->exitCode, 0U);
    EXPECT_FALSE(joiner->handle);
}

TEST(Thread, IsNotStartedWithoutMemory) {
    Body body;
    ThreadHandle handle;
    ThreadId id = 77;
    Morquil::Testing::FailNextAllocation();
    EXPECT_EQ(StartThread(handle, &Body::Run, &body, &id), noMemoryForThread);
    EXPECT_FALSE(handle);
    EXPECT_EQ(id, 77U);
}

TEST(Thread, ThatWasNeverStartedIsJoinedAlready) {
    ThreadHandle handle;
    std::uint32_t exitCode = 77;
    EXPECT_EQ(JoinThread(handle, &exitCode), 0U);
    EXPECT_EQ(exitCode, 0U);
}

}  // namespace
}  // namespace QRN::Core
