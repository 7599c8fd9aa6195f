// Points in time as the gateway stores and prints them.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace Morquil::Gateway {

/// A time of day of the system's clock, which may jump. Nothing is ordered by it alone.
using Time = std::chrono::sys_time<std::chrono::milliseconds>;

/// Tells the time; tests have their own.
Time Now();

/// "2026-11-22T09:36:12.345Z"
std::string FormatTime(Time time);

/// Reads what `FormatTime` writes; fractions may have any length or be missing, and an offset such as +01:00 may stand
/// in place of Z. Nothing for any other text.
std::optional<Time> ParseTime(std::string_view text);

}  // namespace Morquil::Gateway
