// A test as a user of MorquilAPI would write it: the program and the library are real, the device is morquil-sim.
#include "input_monitor.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

#include "simulated_device.h"

namespace {

/// Accepts messages on the library's threads, and hands them to the test.
class Inbox {
public:
    InputMonitor::Messenger Messenger() {
        return [this](const std::string& message) {
            const std::lock_guard lock(mutex_);
            messages_.push_back(message);
            arrived_.notify_all();
        };
    }

    /// Waits for a message and skips those before it. The test does not sleep: it continues as soon as the message is
    /// there.
    bool Receives(const std::string& expected) {
        std::unique_lock lock(mutex_);
        return arrived_.wait_for(lock, std::chrono::seconds(20), [&] { return Take(expected); });
    }

private:
    bool Take(const std::string& expected) {
        while (!messages_.empty()) {
            const std::string message = messages_.front();
            messages_.pop_front();
            if (message == expected) {
                return true;
            }
        }
        return false;
    }

    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::string> messages_;
};

/// The library prints what devices send; the output is the tests' own.
class QuietLibrary : public testing::Environment {
public:
    void SetUp() override {
        [[maybe_unused]] const morquil::Apartment apartment;
        morquil::SilenceLibrary();
    }
};
const testing::Environment* const quietLibrary = testing::AddGlobalTestEnvironment(new QuietLibrary);

TEST(InputMonitor, ReportsALostSignal) {
    const SimulatedDevice device(
        "wait-for-host\n"
        "after 200 ms set VIDEO INPUT Signal present false\n"
        "wait-for-no-host\n"
        "quit\n");
    Inbox inbox;
    const InputMonitor monitor(device.Address(), inbox.Messenger());
    EXPECT_TRUE(inbox.Receives("watching Morquil Simulator"));
    EXPECT_TRUE(inbox.Receives("no signal"));
}

TEST(InputMonitor, ReportsALostDeviceAndWatchesItAgainWhenItIsBack) {
    const SimulatedDevice device(
        "wait-for-host\n"
        "after 200 ms drop\n"
        "wait-for-no-host\n"
        "wait-for-host\n"
        "wait-for-no-host\n"
        "quit\n");
    Inbox inbox;
    const InputMonitor monitor(device.Address(), inbox.Messenger());
    EXPECT_TRUE(inbox.Receives("the device is lost"));
    EXPECT_TRUE(inbox.Receives("watching Morquil Simulator"));
}

}  // namespace
