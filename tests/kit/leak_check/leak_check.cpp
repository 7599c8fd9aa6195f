// After every test no thread, socket, handle or object of the library is left over.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/kit/leak_check/setup.h"
#include "tests/kit/process_counts.h"

namespace Morquil::Testing {
namespace {

struct Counts {
    std::size_t threads = 0;
    std::size_t handles = 0;
    unsigned long references = 0;
};

Counts CountNow() {
    return {ThreadCount(), OpenHandleCount(), LiveReferences()};
}

class LeakCheck final : public testing::EmptyTestEventListener {
public:
    void OnTestProgramStart(const testing::UnitTest& /*program*/) override {
        std::thread([] {}).join();  // a sanitizer creates its own thread with the first
        WarmUp();
        allowed_ = CountNow();
        allowed_.threads += systemsOwn.threads;
        allowed_.handles += systemsOwn.handles + IntentionallyKeptHandles();
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
        EXPECT_LE(after.handles, allowed_.handles) << test.name() << " leaks handles";
        EXPECT_EQ(after.references, 0U) << test.name() << " leaks references to the discovery object";
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
}  // namespace Morquil::Testing
