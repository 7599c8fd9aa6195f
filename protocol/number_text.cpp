#include "protocol/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>

#include "protocol/big_natural.h"

namespace Morquil {

namespace {

__extension__ using Natural128 = unsigned __int128;

constexpr std::uint32_t billion = 1'000'000'000;
constexpr std::uint32_t million = 1'000'000;
constexpr std::size_t decimals = 6;
constexpr std::size_t billionDigits = 9;

/// "00" to "99", one after the other.
constexpr auto digitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t number = 0; number < 100; ++number) {
        pairs[2 * number] = static_cast<char>('0' + number / 10);
        pairs[2 * number + 1] = static_cast<char>('0' + number % 10);
    }
    return pairs;
}();

constexpr std::array<std::uint32_t, 10> powersOfTen = {0,      10,      100,      1000,      10000,
                                                       100000, 1000000, 10000000, 100000000, 1000000000};

std::size_t DigitsOf(std::uint32_t number) {
    // 1233 / 4096 is the logarithm of 2, near enough for 32 bits.
    const std::size_t estimate = static_cast<std::size_t>(std::bit_width(number | 1)) * 1233 / 4096;
    return estimate + (number >= powersOfTen[estimate] ? 1 : 0);
}

char* WritePair(char* to, std::uint32_t number) {
    std::memcpy(to, &digitPairs[std::size_t{number} * 2], 2);
    return to + 2;
}

/// Writes the last `digits` digits.
char* WriteDigits(char* to, std::uint32_t number, std::size_t digits) {
    char* const end = to + digits;
    char* at = end;
    for (; digits >= 2; digits -= 2) {
        at -= 2;
        WritePair(at, number % 100);
        number /= 100;
    }
    if (digits == 1) {
        *to = static_cast<char>('0' + number % 10);
    }
    return end;
}

char* WriteLong(char* to, std::uint64_t number) {
    if (number <= UINT32_MAX) {
        return WriteUnsigned(to, static_cast<std::uint32_t>(number));
    }
    return WriteDigits(WriteLong(to, number / billion), static_cast<std::uint32_t>(number % billion), billionDigits);
}

char* WriteNumber(char* to, std::uint64_t whole, std::uint32_t millionths) {
    to = WriteLong(to, whole);
    *to++ = '.';
    return WriteDigits(to, millionths, decimals);
}

/// A whole number of 64 bits and more.
char* WriteLarge(char* to, std::uint64_t significand, std::size_t exponent) {
    std::array<std::uint32_t, longestDecimalText / billionDigits> groups;
    std::size_t count = 0;
    for (BigNatural rest(significand, exponent); !rest.IsZero(); ++count) {
        groups[count] = rest.DivideBy(billion);
    }
    to = WriteUnsigned(to, groups[--count]);
    while (count > 0) {
        to = WriteDigits(to, groups[--count], billionDigits);
    }
    constexpr std::string_view noDecimals = ".000000";
    return std::copy(noDecimals.begin(), noDecimals.end(), to);
}

/// The nearest whole number to `scaled` divided by 2 to the power of `bits`, which is not zero; halves go to the even
/// one.
std::uint32_t RoundedShift(Natural128 scaled, std::size_t bits) {
    const Natural128 half = Natural128{1} << (bits - 1);
    const Natural128 rest = scaled & (half + half - 1);
    const auto whole = static_cast<std::uint32_t>(scaled >> bits);
    return rest > half || (rest == half && whole % 2 == 1) ? whole + 1 : whole;
}

/// The significand, divided by 2 to the power of `bits`, which is not zero.
char* WriteFraction(char* to, std::uint64_t significand, std::size_t bits) {
    constexpr std::size_t bitsOfNothing = 80;  // the significand and a million have less together
    if (bits >= bitsOfNothing) {
        return WriteNumber(to, 0, 0);
    }
    const std::uint64_t whole = bits < 64 ? significand >> bits : 0;
    const std::uint64_t fraction = bits < 64 ? significand & ((std::uint64_t{1} << bits) - 1) : significand;
    const std::uint32_t millionths = RoundedShift(Natural128{fraction} * million, bits);
    return millionths < million ? WriteNumber(to, whole, millionths) : WriteNumber(to, whole + 1, 0);
}

char* WriteWord(char* to, std::string_view word) {
    return std::copy(word.begin(), word.end(), to);
}

}  // namespace

char* WriteUnsigned(char* to, std::uint32_t number) {
    // Most numbers have one digit or two.
    if (number < 10) {
        *to = static_cast<char>('0' + number);
        return to + 1;
    }
    if (number < 100) {
        return WritePair(to, number);
    }
    return WriteDigits(to, number, DigitsOf(number));
}

char* WriteSigned(char* to, std::int32_t number) {
    const auto bits = static_cast<std::uint32_t>(number);
    if (number < 0) {
        *to++ = '-';
        return WriteUnsigned(to, 0 - bits);
    }
    return WriteUnsigned(to, bits);
}

char* WriteHexadecimal(char* to, std::uint32_t number) {
    const std::size_t digits = (static_cast<std::size_t>(std::bit_width(number | 1)) + 3) / 4;
    for (std::size_t at = digits; at-- > 0; number >>= 4) {
        to[at] = "0123456789abcdef"[number & 15];
    }
    return to + digits;
}

char* WriteDecimal(char* to, double number) {
    constexpr int significandBits = 52;
    constexpr std::uint64_t hiddenBit = std::uint64_t{1} << significandBits;
    constexpr std::uint64_t exponentOfNoNumber = 0x7FF;
    constexpr int exponentOfOne = 1023;  // as it is stored

    const auto bits = std::bit_cast<std::uint64_t>(number);
    const std::uint64_t stored = bits >> significandBits & exponentOfNoNumber;
    const std::uint64_t fraction = bits & (hiddenBit - 1);
    if (std::signbit(number)) {
        *to++ = '-';
    }
    if (stored == exponentOfNoNumber) {
        return WriteWord(to, fraction == 0 ? "inf" : "nan");
    }
    const std::uint64_t significand = stored == 0 ? fraction : fraction | hiddenBit;
    const int exponent = static_cast<int>(std::max<std::uint64_t>(stored, 1)) - exponentOfOne - significandBits;
    if (exponent < 0) {
        return WriteFraction(to, significand, static_cast<std::size_t>(-exponent));
    }
    constexpr int spareBits = 64 - 1 - significandBits;
    return exponent <= spareBits ? WriteNumber(to, significand << exponent, 0)
                                 : WriteLarge(to, significand, static_cast<std::size_t>(exponent));
}

}  // namespace Morquil
