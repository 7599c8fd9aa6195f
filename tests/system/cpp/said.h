#pragma once

#include <chrono>
#include <future>
#include <optional>

namespace Morquil::Testing {

/// A one-time signal.
template <class Value>
class Said {
public:
    void Say(Value value) { promise_.set_value(value); }
    std::optional<Value> Await() {
        return future_.wait_for(std::chrono::seconds(10)) == std::future_status::ready ? std::optional(future_.get())
                                                                                       : std::nullopt;
    }

private:
    std::promise<Value> promise_;
    std::future<Value> future_ = promise_.get_future();
};

}  // namespace Morquil::Testing
