#pragma once

#include <chrono>

namespace QRN::Core {

/// A clock that nobody sets and that never goes back.
using Clock = std::chrono::steady_clock;

Clock::time_point Now();

}  // namespace QRN::Core
