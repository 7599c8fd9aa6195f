#pragma once

#include <chrono>

namespace QRN::Core {

/// A clock that cannot be set and never goes back.
using Clock = std::chrono::steady_clock;

Clock::time_point Now();

}  // namespace QRN::Core
