// The thread that a store's callbacks are posted to, and waiting for them.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <functional>
#include <optional>

#include "gateway/store/mutex.h"

namespace Morquil::Testing {

/// Threads: `Post` any; the rest the test's.
class Caller {
public:
    void Post(std::function<void()> function) {
        const Gateway::Held held(mutex_);
        posted_.push_back(std::move(function));
        wakeup_.WakeAll();
    }

    /// Runs one posted function. Returns: false after waiting for 60 s.
    bool RunOne() {
        const std::function<void()> function = Next();
        if (function) {
            function();
        }
        return bool(function);
    }

    /// Starts what takes a callback, and waits for the callback. Returns: what it was passed.
    template <class Result, class Start>
    Result Await(Start start) {
        std::optional<Result> result;
        start([&](Result given) { result = std::move(given); });
        while (!result && RunOne()) {
        }
        EXPECT_TRUE(result.has_value()) << "No callback within 60 s";
        return result.value_or(Result{});
    }

private:
    std::function<void()> Next() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        const Gateway::Held held(mutex_);
        while (posted_.empty() && std::chrono::steady_clock::now() < end) {
            wakeup_.WaitUntil(mutex_, end);
        }
        if (posted_.empty()) {
            return {};
        }
        std::function<void()> function = std::move(posted_.front());
        posted_.pop_front();
        return function;
    }

    Gateway::Mutex mutex_;
    Gateway::Wakeup wakeup_;
    std::deque<std::function<void()>> posted_ GUARDED_BY(mutex_);
};

}  // namespace Morquil::Testing
