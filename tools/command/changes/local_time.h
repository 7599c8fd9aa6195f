#pragma once

#include <chrono>
#include <string>

namespace Morquil::Command {

using WallClock = std::chrono::system_clock;

/// "2026-01-31T23:59:59.999", in local time.
/// Threads: one at a time.
std::string LocalTime(WallClock::time_point time);

}  // namespace Morquil::Command
