#pragma once

#include <chrono>
#include <string>

namespace Morquil::Gateway {

using WallClock = std::chrono::system_clock;
using WallTime = WallClock::time_point;

/// RFC 3339 in UTC with milliseconds: "2026-11-22T09:36:02.017Z".
std::string FormatTime(WallTime time);

/// Seconds, to the millisecond, from `then` to now; 0 if the clock was set back in between.
double SecondsSince(WallTime then);

}  // namespace Morquil::Gateway
