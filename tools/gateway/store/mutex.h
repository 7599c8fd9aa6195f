// A lock and its condition, with the annotations that clang's analysis of threads needs.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "core/thread_safety.h"

namespace Morquil::Gateway {

class CAPABILITY("mutex") Mutex {
public:
    void Enter() ACQUIRE() { mutex_.lock(); }
    void Leave() RELEASE() { mutex_.unlock(); }

private:
    friend class Wakeup;
    std::mutex mutex_;
};

/// Holds a `Mutex` until the end of the scope.
class SCOPED_CAPABILITY Held {
public:
    explicit Held(Mutex& mutex) ACQUIRE(mutex) : mutex_(mutex) { mutex_.Enter(); }
    ~Held() RELEASE() { mutex_.Leave(); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

private:
    Mutex& mutex_;
};

/// What a thread waits for, which may also wake it for nothing: test the condition in a loop.
class Wakeup {
public:
    void Wait(Mutex& mutex) REQUIRES(mutex) {
        std::unique_lock lock(mutex.mutex_, std::adopt_lock);
        condition_.wait(lock);
        lock.release();
    }
    void WaitUntil(Mutex& mutex, std::chrono::steady_clock::time_point end) REQUIRES(mutex) {
        std::unique_lock lock(mutex.mutex_, std::adopt_lock);
        condition_.wait_until(lock, end);
        lock.release();
    }
    void WakeAll() { condition_.notify_all(); }

private:
    std::condition_variable condition_;
};

}  // namespace Morquil::Gateway
