// After every test no thread, socket or handle is left over.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/host/complete_device.h"
#include "tests/host/host.h"
#include "tests/support/process_counts.h"
#include "tests/support/scripted_device.h"

namespace Morquil::Test {
namespace {

struct Counts {
    std::size_t threads = Testing::ThreadCount();
    std::size_t handles = Testing::OpenHandleCount();
};

class LeakCheck final : public testing::EmptyTestEventListener {
public:
    void OnTestProgramStart(const testing::UnitTest& /*program*/) override {
        // What libraries make once, at the first use, and keep.
        Testing::ScriptedDevice device(CompleteDevice());
        Disconnect(Connect(device.Address()).device);
        allowed_ = {Testing::ThreadCount() + Testing::systemsOwn.threads,
                    Testing::OpenHandleCount() + Testing::systemsOwn.handles};
    }

    void OnTestEnd(const testing::TestInfo& test) override {
        // A thread that has done its last work for the library goes when the system lets it; nobody tells when.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        Counts after;
        while (IsMore(after) && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
            after = Counts();
        }
        EXPECT_LE(after.threads, allowed_.threads) << test.name() << " leaves threads behind";
        EXPECT_LE(after.handles, allowed_.handles) << test.name() << " leaves handles behind";
    }

private:
    bool IsMore(const Counts& after) const {
        return after.threads > allowed_.threads || after.handles > allowed_.handles;
    }

    Counts allowed_;
};

const bool isListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new LeakCheck);
    return true;
}();

}  // namespace
}  // namespace Morquil::Test
