#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace Morquil::Testing {

/// Ends the whole program if its scope lasts longer than 5 s: a hanging test should not hang everything.
class Watchdog {
public:
    Watchdog()
        : thread_([this] {
              std::unique_lock lock(mutex_);
              if (!over_.wait_for(lock, std::chrono::seconds(5), [this] { return isOver_; })) {
                  std::fprintf(stderr, "The watchdog ends a test that hangs.\n");
                  std::abort();
              }
          }) {}
    ~Watchdog() {
        {
            const std::lock_guard lock(mutex_);
            isOver_ = true;
        }
        over_.notify_all();
        thread_.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    std::mutex mutex_;
    std::condition_variable over_;
    bool isOver_ = false;
    std::thread thread_;
};

/// Expects that its scope lasts less than a second.
class OneSecond {
public:
    OneSecond() = default;
    ~OneSecond() { EXPECT_LT(std::chrono::steady_clock::now() - start_, std::chrono::seconds(1)); }
    OneSecond(const OneSecond&) = delete;
    OneSecond& operator=(const OneSecond&) = delete;

private:
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// Expects that `call` returns within a second. Returns: what it returns.
template <class Call>
auto WithinASecond(Call call) {
    const OneSecond limit;
    return call();
}

}  // namespace Morquil::Testing
