#include "protocol/text/value_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <utility>

namespace Morquil {
namespace {

std::string_view Rest(ValueReader& reader) {
    std::string_view rest;
    reader.ReadWord(rest);
    return rest;
}

/// Compares with what the C library reads, to the last bit. Too large a number is one for the library, and none for us.
void ExpectAsTheLibrary(const std::string& text) {
    const double expected = std::strtod(text.c_str(), nullptr);
    ValueReader reader(text);
    double actual = 0;
    ASSERT_EQ(reader.Read(actual), std::isfinite(expected)) << text;
    ASSERT_EQ(Rest(reader), "") << text;
    if (std::isfinite(expected)) {
        ASSERT_EQ(std::bit_cast<std::uint64_t>(actual), std::bit_cast<std::uint64_t>(expected))
            << text << ": " << std::hexfloat << actual << ", not " << expected;
    }
}

template <class Number>
std::string Printed(const char* format, Number number) {
    std::array<char, 1200> text{};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(text.data(), text.size(), format, number);
#pragma GCC diagnostic pop
    return text.data();
}

TEST(ValueReaderDecimals, ReadsNumbersAtTheEdges) {
    // clang-format off
    constexpr const char* edges[] = {
        "0", "0.", ".0", "000", "0e5", "0.000e-99999999999999999999", "0e99999999999999999999", "1", "1.", ".1", "01",
        "9007199254740991", "9007199254740992", "9007199254740993", "9007199254740993.0000000000000000000000000001",
        "1e22", "1e23", "9007199254740993e22", "1e-22", "1e-23", "1234567890123456789", "12345678901234567890",
        "0.1", "0.2", "0.3", "1.7976931348623157e308", "1.7976931348623158e308", "1.7976931348623159e308", "1.8e308",
        "2e308", "9.99e308", "1e309", "1e99999999999999999999", "0.00001e313", "17976931348623157e292",
        "2.2250738585072014e-308", "2.2250738585072011e-308", "2.225073858507201e-308", "4.9e-324", "4.9406564584124654e-324",
        "2.4703282292062327e-324", "2.4703282292062328e-324", "3e-324", "2e-324", "1e-324", "9e-325", "1e-99999999999999999999",
        "6.9294956446009195e15", "3.7455744005952583e15", "8.5e-322", "1e0", "1E+5", "1e-5", "1e+05"};
    // clang-format on
    for (const char* const text : edges) {
        ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary(text));
    }
}

TEST(ValueReaderDecimals, StopsAtTheFirstCharacterThatCannotBelongToANumber) {
    const std::pair<std::string_view, std::string_view> texts[] = {{"1.5.5", ".5"}, {"1e5.5", ".5"},  {"1e5e5", "e5"},
                                                                   {"1e5-5", "-5"}, {"12abc", "abc"}, {"7 8", "8"},
                                                                   {"0x10", "x10"}};
    for (const auto& [text, expected] : texts) {
        ValueReader reader(text);
        double value = 0;
        EXPECT_TRUE(reader.Read(value)) << text;
        EXPECT_EQ(Rest(reader), expected) << text;
    }
}

TEST(ValueReaderDecimals, ReadsNothingWithoutADigitWhereOneMustBe) {
    for (const std::string_view text : {"", ".", "e5", ".e5", "1e", "1e+", "5.e-", "inf", "nan", "-inf"}) {
        double value = 7.5;
        EXPECT_FALSE(ValueReader(text).Read(value)) << text;
        EXPECT_EQ(value, 7.5) << text;
    }
}

TEST(ValueReaderDecimals, ReadsWhatWasWrittenBackToTheLastBit) {
    std::mt19937_64 random(8);
    for (int round = 0; round < 20000; ++round) {
        const double number = std::abs(std::bit_cast<double>(random()));
        if (std::isfinite(number)) {
            ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary(Printed("%.17g", number)));
            ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary(Printed("%.15g", number)));
            ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary(Printed("%.20e", number)));
        }
        ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary(Printed("%f", static_cast<double>(random() % 100000000) / 1e6)));
    }
}

/// The exact middle between two numbers side by side. A long double holds it on every system of ours.
class Middle {
public:
    Middle(double lower, double upper) {
        static_assert(LDBL_MANT_DIG > DBL_MANT_DIG);
        const std::string text = Printed("%.780Le", (static_cast<long double>(lower) + upper) / 2);
        const std::size_t mark = text.find('e');
        exponent_ = text.substr(mark);
        digits_ = text.substr(0, text.find_last_not_of('0', mark - 1) + 1);
    }
    std::string Text() const { return digits_ + exponent_; }
    /// A digit far after those that a double can hold makes the difference.
    std::string JustAbove() const { return digits_ + std::string(60, '0') + '1' + exponent_; }
    std::string JustBelow() const {
        std::string less = digits_;
        --less.back();
        return less + std::string(60, '9') + exponent_;
    }

private:
    std::string digits_;
    std::string exponent_;
};

double Read(std::string_view text) {
    double value = -1;
    EXPECT_TRUE(ValueReader(text).Read(value)) << text;
    return value;
}

// Does not ask the C library, some of which are wrong here.
TEST(ValueReaderDecimals, RoundsTheMiddleBetweenTwoDoublesToTheEvenOne) {
    std::mt19937_64 random(9);
    for (int round = 0; round < 400; ++round) {
        // The first rounds go through the smallest numbers, whose middles have the most digits.
        const std::uint64_t bits = (round < 200 ? random() >> (12 + round / 4) : random()) & INT64_MAX;
        const auto lower = std::bit_cast<double>(bits);
        const auto upper = std::bit_cast<double>(bits + 1);
        if (std::isfinite(upper)) {
            const Middle middle(lower, upper);
            ASSERT_EQ(Read(middle.Text()), bits % 2 == 0 ? lower : upper) << middle.Text();
            ASSERT_EQ(Read(middle.JustAbove()), upper) << middle.JustAbove();
            ASSERT_EQ(Read(middle.JustBelow()), lower) << middle.JustBelow();
        }
    }
}

TEST(ValueReaderDecimals, ReadsTextsOfAnyLength) {
    const std::string zeros(2000, '0');
    const std::string nines(2000, '9');
    ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary(zeros + "1.5" + zeros));
    ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary("0." + nines));
    ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary("0." + zeros + "1e2001"));
    ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary("1" + zeros + "e-2000"));
    ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary(nines + "e-2000"));
    ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary(nines));
    ASSERT_NO_FATAL_FAILURE(ExpectAsTheLibrary("1e-" + zeros + "5"));
}

}  // namespace
}  // namespace Morquil
