// After every test no thread, socket, handle or object of the library is left over.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/leak_check/setup.h"
#include "tests/support/process_counts.h"

namespace Morquil::Test {
namespace {

struct Counts {
    std::size_t threads = 0;
    std::size_t handles = 0;
    unsigned long references = 0;
};

Counts CountNow() {
    return {Testing::ThreadCount(), Testing::OpenHandleCount(), Testing::LiveReferences()};
}

class LeakCheck final : public testing::EmptyTestEventListener {
public:
    void OnTestProgramStart(const testing::UnitTest& /*program*/) override {
        std::thread([] {}).join();  // a sanitizer creates its own thread with the first
        Testing::WarmUp();
        allowed_ = CountNow();
        allowed_.threads += Testing::systemsOwn.threads;
        allowed_.handles += Testing::systemsOwn.handles + Testing::HandlesLeftOnPurpose();
    }

    void OnTestEnd(const testing::TestInfo& test) override {
        // A thread that has done its last work for the library ends when the system lets it, without notice.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        Counts after = CountNow();
        while (IsMore(after) && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
            after = CountNow();
        }
        EXPECT_LE(after.threads, allowed_.threads) << test.name() << " leaves threads running";
        EXPECT_LE(after.handles, allowed_.handles) << test.name() << " leaves handles behind";
        EXPECT_EQ(after.references, 0U) << test.name() << " leaves references to the discovery object behind";
    }

private:
    bool IsMore(const Counts& after) const {
        return after.threads > allowed_.threads || after.handles > allowed_.handles || after.references != 0;
    }

    Counts allowed_;
};

const bool isListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new LeakCheck);
    return true;
}();

}  // namespace
}  // namespace Morquil::Test
