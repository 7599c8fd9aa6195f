// Writes numbers as the C library's printf does in its own locale, whatever locale the host has set.
// Every function writes to `to`, without a terminator, and returns the end of what it wrote.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Morquil {

inline constexpr std::size_t longestIntegerText = 11;
/// The largest double has 309 digits before its point; a sign, the point and six decimals go with them.
inline constexpr std::size_t longestDecimalText = 317;
/// What lies below this in size, as nearly everything does, needs no more than so many characters.
inline constexpr double shortDecimalLimit = 1e15;
inline constexpr std::size_t longestShortDecimalText = 24;

/// As "%d".
char* WriteSigned(char* to, std::int32_t number);
/// As "%u".
char* WriteUnsigned(char* to, std::uint32_t number);
/// As "%x".
char* WriteHexadecimal(char* to, std::uint32_t number);
/// As "%f": six decimals, the exact binary value rounded, halves to even; "inf" and "nan" with their signs.
char* WriteDecimal(char* to, double number);

}  // namespace Morquil
