// Formats protocol text.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace Morquil {

/// vsnprintf for the conversions %s %d %u %x %f %%, without flags, width or precision. It ignores the host's locale:
/// "%f" always writes a point and six decimals. Any other conversion is copied unchanged and consumes no argument; a
/// null text is written as "(null)".
/// Returns: the length of the whole text without its terminator, even when `capacity` cut it (negative beyond INT_MAX).
/// Terminates what it wrote unless `capacity` is 0.
[[gnu::format(printf, 3, 0)]] int FormatText(char* buffer, std::size_t capacity, const char* format,
                                             std::va_list arguments);

}  // namespace Morquil
