#include "protocol/text/format_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "tests/unit/protocol/foreign_locale.h"
#include "tests/unit/protocol/formatted.h"

namespace Morquil {
namespace {

using Testing::Formatted;

/// Compares length, text and the bytes after the text with the C library's output for the same arguments.
[[gnu::format(printf, 2, 3)]] void ExpectAsTheLibrary(std::size_t capacity, const char* format, ...) {
    std::array<char, 1024> expected{};
    std::array<char, 1024> actual{};
    std::va_list arguments;
    va_start(arguments, format);
    const int expectedLength = std::vsnprintf(expected.data(), capacity, format, arguments);
    va_end(arguments);
    va_start(arguments, format);
    const int length = FormatText(actual.data(), capacity, format, arguments);
    va_end(arguments);
    EXPECT_EQ(length, expectedLength) << format << " in " << capacity;
    EXPECT_EQ(actual, expected) << format << " in " << capacity;
}

constexpr int numbers[] = {0, 1, -1, 9, 10, -10, 12345, INT_MAX, INT_MIN, INT_MAX - 1};
constexpr double doubles[] = {
    0.0,    -0.0,   0.5,    -0.5,      1.0 / 3,  2.0 / 3, 1e-7,   5e-7,      0.0000005,
    1.5e-6, 2.5e-6, 0.1,    1234.5678, -1e6,     1e15,    1e22,   1e23,      123456789012345678.0,
    1e100,  1e308,  -1e308, DBL_MAX,   -DBL_MAX, DBL_MIN, 5e-324, 9.9999995, 99.9999994999};

TEST(FormatText, WritesWordsAndNumbersAsTheLibraryDoes) {
    const char* const key = "Line offset";
    ExpectAsTheLibrary(256, "%s:\n", "GENLOCK");
    ExpectAsTheLibrary(256, "%s: %s\n", key, "true");
    ExpectAsTheLibrary(256, "%s: %s\n", "", "");
    ExpectAsTheLibrary(256, " %s", "Embedded");
    for (const int number : numbers) {
        const auto bits = static_cast<unsigned>(number);
        ExpectAsTheLibrary(256, "%s: %d\n", key, number);
        ExpectAsTheLibrary(256, "%s: %u\n", key, bits);
        ExpectAsTheLibrary(256, "%s: 0x%x\n", key, bits);
        ExpectAsTheLibrary(256, "%s: %d %d\n", key, number, -(number / 2));
        ExpectAsTheLibrary(256, "%s: %u %u\n", key, bits, ~bits);
    }
}

TEST(FormatText, WritesDecimalsAsTheLibraryDoes) {
    for (const double number : doubles) {
        ExpectAsTheLibrary(1000, "%s: %f\n", "Align size X left", number);
        ExpectAsTheLibrary(256, "%s: %f\n", "Align size X left", number);
        ExpectAsTheLibrary(1000, "%s: %f %f\n", "Align size X range", number, -number);
    }
    std::mt19937_64 random(20);
    for (int round = 0; round < 20000; ++round) {
        const std::uint64_t bits = random();
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        if (std::isfinite(number)) {
            ExpectAsTheLibrary(1000, "%f", number);
        }
        ExpectAsTheLibrary(1000, "%f", static_cast<double>(static_cast<std::int64_t>(bits)) * 1e-9);
    }
}

TEST(FormatText, WritesNonNumbersAsWords) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Formatted("%f %f", infinity, -infinity), "inf -inf");
    EXPECT_EQ(Formatted("%f %f", std::copysign(noNumber, 1.0), std::copysign(noNumber, -1.0)), "nan -nan");
}

TEST(FormatText, CutsAtEveryLengthAsTheLibraryDoes) {
    for (std::size_t length = 230; length < 270; ++length) {
        const std::string key(length, 'k');
        for (std::size_t capacity = 250; capacity <= 260; ++capacity) {
            ExpectAsTheLibrary(capacity, "%s:\n", key.c_str());
            ExpectAsTheLibrary(capacity, "%s: %d\n", key.c_str(), -123456);
            ExpectAsTheLibrary(capacity, "%s: %u\n", key.c_str(), 4294967295U);
            ExpectAsTheLibrary(capacity, "%s: 0x%x\n", key.c_str(), 0xABCDEFU);
            ExpectAsTheLibrary(capacity, "%s: %f\n", key.c_str(), 1.25);
            ExpectAsTheLibrary(capacity, "%s: %s\n", key.c_str(), "false");
            ExpectAsTheLibrary(capacity, "%s: %d %d\n", key.c_str(), -1, 22);
            ExpectAsTheLibrary(capacity, "%s: %u %u\n", key.c_str(), 1U, 22U);
            ExpectAsTheLibrary(capacity, "%s: %f %f\n", key.c_str(), -0.5, 22.0);
            ExpectAsTheLibrary(capacity, " %s", key.c_str());
        }
    }
}

TEST(FormatText, WritesNothingIntoNoCapacity) {
    ExpectAsTheLibrary(0, "%s: %d\n", "Gain", 5);
    ExpectAsTheLibrary(1, "%s: %d\n", "Gain", 5);
    ExpectAsTheLibrary(2, "%s: %d\n", "Gain", 5);
}

[[gnu::format(printf, 1, 2)]] int FormatWithoutBuffer(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = FormatText(nullptr, 0, format, arguments);
    va_end(arguments);
    return length;
}

TEST(FormatText, CountsWithoutABuffer) {
    EXPECT_EQ(FormatWithoutBuffer("%d: %s\n", 12, "Gain"), 9);
}

// Has no format attribute: these formats are not meant for the C library.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string FormattedUnchecked(const char* format, ...) {
    std::array<char, 64> text{};
    std::va_list arguments;
    va_start(arguments, format);
    FormatText(text.data(), text.size(), format, arguments);
    va_end(arguments);
    return text.data();
}
#pragma GCC diagnostic pop

TEST(FormatText, WritesUnknownConversionsUnchanged) {
    EXPECT_EQ(FormattedUnchecked("100%%"), "100%");
    EXPECT_EQ(FormattedUnchecked("%%d %d", 7), "%d 7");
    EXPECT_EQ(FormattedUnchecked("%5d %d", 7), "%5d 7");
    EXPECT_EQ(FormattedUnchecked("%n%ld%d", 7), "%n%ld7");
    EXPECT_EQ(FormattedUnchecked("at the end %"), "at the end %");
    EXPECT_EQ(FormattedUnchecked("%"), "%");
    EXPECT_EQ(FormattedUnchecked(""), "");
}

TEST(FormatText, SurvivesANullText) {
    const char* const nothing = nullptr;
    EXPECT_EQ(FormattedUnchecked("%s!", nothing), "(null)!");
}

TEST(FormatText, WritesAPointInEveryLocale) {
    const ForeignLocale locale;
    EXPECT_EQ(Formatted("%s: %f %f\n", "Range", 1.5, -1234567.25), "Range: 1.500000 -1234567.250000\n")
        << locale.Name();
}

}  // namespace
}  // namespace Morquil
