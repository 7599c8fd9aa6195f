#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace Morquil::Testing {

/// One lock for everything that tests share with the threads under test, and the wake-up for those that wait for a
/// change. Never destroyed: a thread that is ending may still be leaving it.
class Monitor {
public:
    static std::unique_lock<std::mutex> Enter() { return std::unique_lock(Instance().mutex_); }

    /// To be called with the lock held, after each change.
    static void Changed() { Instance().changed_.notify_all(); }

    /// Waits without limit until `isTrue()`; the caller holds the lock.
    template <class Condition>
    static void WaitUntil(std::unique_lock<std::mutex>& lock, Condition isTrue) {
        Instance().changed_.wait(lock, isTrue);
    }

    /// Waits up to 4 s until `isTrue()`, which is asked with the lock held. Returns: whether it became true.
    template <class Condition>
    static bool Await(Condition isTrue) {
        std::unique_lock lock = Enter();
        return Instance().changed_.wait_for(lock, std::chrono::seconds(4), isTrue);
    }

private:
    static Monitor& Instance() {
        static Monitor& instance = *new Monitor;
        return instance;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
};

}  // namespace Morquil::Testing
