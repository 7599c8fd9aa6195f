#pragma once

#include <chrono>
#include <cstdint>

namespace Morquil {

/// Means "without limit" as a time-out in milliseconds.
inline constexpr std::uint32_t unlimitedTimeout = 0xFFFFFFFF;

/// The end of a wait, on a clock that cannot be set: a spurious wake-up does not prolong the wait.
class Deadline {
public:
    explicit Deadline(std::uint32_t timeoutMs)
        : unlimited_(timeoutMs == unlimitedTimeout),
          end_(std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs)) {}

    /// Whole milliseconds still to wait, rounded up so that a wait never ends early; `unlimitedTimeout` for an
    /// unlimited wait.
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
