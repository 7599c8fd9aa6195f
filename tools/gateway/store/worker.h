// A thread for work that takes long: reading pages, hashing passwords.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <thread>

#include "core/thread_safety.h"
#include "gateway/store/mutex.h"

namespace Morquil::Gateway {

class Worker {
public:
    /// `most`: how much work may wait.
    explicit Worker(std::size_t most);
    /// Finishes what is running and drops what waits.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Runs `work` after what was given earlier. It must not throw.
    /// Threads: any. Never waits.
    /// Returns: false if too much waits already; `work` is then dropped.
    bool Run(std::function<void()> work);

private:
    /// Empty at the end.
    std::function<void()> Next();
    void RunAll();

    const std::size_t most_;
    Mutex mutex_;
    Wakeup wakeup_;
    std::deque<std::function<void()>> waiting_ GUARDED_BY(mutex_);
    bool isEnding_ GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

}  // namespace Morquil::Gateway
