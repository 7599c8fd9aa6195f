#pragma once

#include <chrono>
#include <cstdint>
#include <utility>

#include "core/clock.h"

namespace Morquil {

/// How long a connection has been silent, counted from the first wait after the last byte sent or received. A wake-up
/// without a byte does not end the silence.
class Silence {
public:
    using Time = QRN::Core::Clock::time_point;

    /// The longest permitted silence.
    static constexpr std::chrono::milliseconds limit{9000};

    /// A byte was sent or received.
    void Break() { isBroken_ = true; }

    /// Call it before each wait.
    /// Returns: the milliseconds left until the limit, rounded up.
    std::uint32_t RemainingMs(Time now) {
        if (std::exchange(isBroken_, false)) {
            began_ = now;
        }
        const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(began_ + limit - now);
        return remaining.count() > 0 ? static_cast<std::uint32_t>(remaining.count()) : 0;
    }

private:
    bool isBroken_ = true;
    Time began_;
};

}  // namespace Morquil
