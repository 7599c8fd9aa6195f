#pragma once

#include <chrono>
#include <cstdint>

namespace Morquil {

/// Stands for "without limit" where a time-out in milliseconds is asked for.
inline constexpr std::uint32_t unlimitedTimeout = 0xFFFFFFFF;

/// The end of a wait, on a clock that nobody sets: waking for nothing does not prolong the wait.
class Deadline {
public:
    explicit Deadline(std::uint32_t timeoutMs)
        : unlimited_(timeoutMs == unlimitedTimeout),
          end_(std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs)) {}

    /// Whole milliseconds still to wait, rounded up so that a wait never ends early; `unlimitedTimeout` stays so.
    std::uint32_t RemainingMs() const {
        if (unlimited_) {
            return unlimitedTimeout;
        }
        const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now());
        return remaining.count() > 0 ? static_cast<std::uint32_t>(remaining.count()) : 0;
    }

private:
    bool unlimited_;
    std::chrono::steady_clock::time_point end_;
};

}  // namespace Morquil
