#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace Morquil::Testing {

/// Ends the whole program when its scope lasts longer than 5 s: a test that hangs shall not hang everything.
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

}  // namespace Morquil::Testing
