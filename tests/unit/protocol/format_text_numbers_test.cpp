#include "protocol/text/format_text.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>

#include "tests/unit/protocol/formatted.h"

namespace Morquil {
namespace {

using Testing::Formatted;

template <class Number>
void ExpectAsPrintf(Number number, const char* format) {
    std::array<char, 400> expected{};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(expected.data(), expected.size(), format, number);
    ASSERT_EQ(Formatted(format, number), expected.data()) << format;
#pragma GCC diagnostic pop
}

void ExpectDecimal(double number) {
    ASSERT_NO_FATAL_FAILURE(ExpectAsPrintf(number, "%f")) << std::hexfloat << number;
}

void ExpectInteger(std::uint32_t bits) {
    ASSERT_NO_FATAL_FAILURE(ExpectAsPrintf(std::bit_cast<std::int32_t>(bits), "%d"));
    ASSERT_NO_FATAL_FAILURE(ExpectAsPrintf(bits, "%u"));
    ASSERT_NO_FATAL_FAILURE(ExpectAsPrintf(bits, "%x"));
}

TEST(FormatTextNumbers, WritesIntegersOfEveryLengthAsPrintfDoes) {
    for (std::uint64_t power = 1; power <= UINT32_MAX; power *= 10) {
        for (const std::uint64_t number : {power - 1, power, power + 1, 2 * power, UINT32_MAX - power}) {
            ASSERT_NO_FATAL_FAILURE(ExpectInteger(static_cast<std::uint32_t>(number)));
        }
    }
    for (std::uint32_t bit = 1; bit != 0; bit <<= 1) {
        ASSERT_NO_FATAL_FAILURE(ExpectInteger(bit));
        ASSERT_NO_FATAL_FAILURE(ExpectInteger(bit - 1));
    }
}

TEST(FormatTextNumbers, WritesRandomIntegersAsPrintfDoes) {
    std::mt19937 random(3);
    for (int round = 0; round < 100000; ++round) {
        const auto bits = static_cast<std::uint32_t>(random());
        ASSERT_NO_FATAL_FAILURE(ExpectInteger(bits >> random() % 32));
    }
}

TEST(FormatTextNumbers, WritesDecimalsAtTheEdgesAsPrintfDoes) {
    // clang-format off
    constexpr double edges[] = {
        0.0, 1.0, 0.5, 0.25, 1e-6, 5e-7, 0.9999994, 0.9999995, 0.9999996, 9.9999995, 999999.9999995, 4294967295.5,
        4294967296.0, 4294967296.5, 9007199254740991.0, 9007199254740992.0, 4503599627370495.5, 999999999999999.875,
        999999999999999.9, 1e15, 1e16, 1e18, 1e19, 9223372036854775808.0, 18446744073709549568.0,
        18446744073709551616.0, 36893488147419103232.0, 1e22, 1e23, 1e100, 1e300, DBL_MAX, DBL_MIN, DBL_TRUE_MIN,
        DBL_EPSILON};
    // clang-format on
    for (const double edge : edges) {
        for (const double number : {edge, std::nextafter(edge, 0.0), std::nextafter(edge, DBL_MAX)}) {
            ASSERT_NO_FATAL_FAILURE(ExpectDecimal(number));
            ASSERT_NO_FATAL_FAILURE(ExpectDecimal(-number));
        }
    }
}

TEST(FormatTextNumbers, WritesEveryPowerOfTwoAsPrintfDoes) {
    for (int exponent = -1074; exponent < 1024; ++exponent) {
        const double power = std::ldexp(1.0, exponent);
        for (const double number :
             {power, std::nextafter(power, 0.0), std::nextafter(power, DBL_MAX), -3 * power / 2}) {
            ASSERT_NO_FATAL_FAILURE(ExpectDecimal(number));
        }
    }
}

TEST(FormatTextNumbers, RoundsHalvesToTheEvenDecimal) {
    // Odd multiples of 1/128 have seven decimals, the last of which is a 5.
    for (int number = 1; number < 20000; number += 2) {
        ASSERT_NO_FATAL_FAILURE(ExpectDecimal(number / 128.0));
        ASSERT_NO_FATAL_FAILURE(ExpectDecimal(number / -128.0));
    }
    EXPECT_EQ(Formatted("%f", 0.0078125), "0.007812");
    EXPECT_EQ(Formatted("%f", 0.0234375), "0.023438");
}

TEST(FormatTextNumbers, WritesRandomDecimalsAsPrintfDoes) {
    std::mt19937_64 random(20);
    for (int round = 0; round < 40000; ++round) {
        const std::uint64_t bits = random();
        ASSERT_NO_FATAL_FAILURE(
            ExpectDecimal(std::ldexp(static_cast<double>(bits >> bits % 64), -static_cast<int>(random() % 90))));
        ASSERT_NO_FATAL_FAILURE(ExpectDecimal(static_cast<double>(static_cast<std::int64_t>(bits)) * 1e-9));
        ASSERT_NO_FATAL_FAILURE(ExpectDecimal(static_cast<double>(bits % 100000000) / 1e6));
        if (std::isfinite(std::bit_cast<double>(bits))) {
            ASSERT_NO_FATAL_FAILURE(ExpectDecimal(std::bit_cast<double>(bits)));
        }
    }
}

}  // namespace
}  // namespace Morquil
