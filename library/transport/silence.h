#pragma once

#include <chrono>
#include <cstdint>
#include <utility>

#include "core/clock.h"

namespace Morquil {

/// How long a connection has been silent: from the first wait after the last byte, sent or received. A wake-up without
/// a byte is no sign of life.
class Silence {
public:
    using Time = QRN::Core::Clock::time_point;

    /// How much silence a connection stands.
    static constexpr std::chrono::milliseconds limit{9000};

    /// A byte was sent or received.
    void Break() { isBroken_ = true; }

    /// To be asked before each wait.
    /// Returns: how many milliseconds of the limit are left, rounded up.
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
