#include "protocol/text/value_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/unit/protocol/foreign_locale.h"

namespace Morquil {
namespace {

/// What a stream reads; created once, because its construction would dominate the run time.
class Reference {
public:
    Reference() {
        stream_.imbue(std::locale::classic());
        stream_ >> std::boolalpha;
    }
    std::istringstream& Over(const std::string& text) {
        stream_.clear();
        stream_.str(text);
        return stream_;
    }

private:
    std::istringstream stream_;
};

bool IsSame(double left, double right) {
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}
template <class T>
bool IsSame(T left, T right) {
    return left == right;
}

/// Reads values until one fails and then, in a second pass, the word that follows the first value.
template <class T>
void ExpectAsAStream(Reference& reference, const std::string& text) {
    auto& stream = reference.Over(text);
    ValueReader reader(text);
    for (int reads = 0; reads < 5; ++reads) {
        T expected{};
        T actual{};
        const bool known = static_cast<bool>(stream >> expected);
        ASSERT_EQ(reader.Read(actual), known) << testing::PrintToString(text) << ", value " << reads;
        if (known) {
            ASSERT_TRUE(IsSame(actual, expected))
                << testing::PrintToString(text) << ": " << actual << ", not " << expected;
        }
    }
    auto& again = reference.Over(text);
    ValueReader wordReader(text);
    T value{};
    std::string expectedWord;
    std::string_view word;
    const bool known = static_cast<bool>(again >> value >> expectedWord);
    ASSERT_EQ(wordReader.Read(value) && wordReader.ReadWord(word), known) << testing::PrintToString(text);
    if (known) {
        ASSERT_EQ(word, expectedWord) << testing::PrintToString(text);
    }
}

void ExpectAllAsAStream(Reference& reference, const std::string& text) {
    ASSERT_NO_FATAL_FAILURE(ExpectAsAStream<std::int32_t>(reference, text));
    ASSERT_NO_FATAL_FAILURE(ExpectAsAStream<std::uint32_t>(reference, text));
    ASSERT_NO_FATAL_FAILURE(ExpectAsAStream<double>(reference, text));
    ASSERT_NO_FATAL_FAILURE(ExpectAsAStream<bool>(reference, text));
}

/// Calls `visit` with every text over the alphabet that has up to `longest` characters.
void ForEachText(std::string_view alphabet, std::size_t longest, const std::function<void(const std::string&)>& visit) {
    std::vector<std::string> texts{""};
    for (std::size_t length = 0; length <= longest; ++length) {
        std::vector<std::string> longer;
        for (const std::string& text : texts) {
            visit(text);
            for (std::size_t i = 0; length < longest && i < alphabet.size(); ++i) {
                longer.push_back(text + alphabet[i]);
            }
        }
        texts.swap(longer);
    }
}

// clang-format off
const char* const corners[] = {
    "", " ", "\t\v\f\r\n", "0", "-0", "+0", "+", "-", "+-1", "--1", "- 1", "+ 1", "12abc", " 12", "\t 12 ", "1-2",
    "1+2", "1 -2", "-1", "-2147483648", "-2147483649", "2147483647", "2147483648", "4294967295", "4294967296",
    "-4294967295", "-4294967296", "99999999999999999999", "-99999999999999999999",
    "00000000000000000000000000000000000000012", "9223372036854775807 1", "18446744073709551616", "0x10", "0X1F",
    "1,000", "1.5", "1.5.5", ".5", "5.", ".", "-.", "+.5", "..5", "5.e", "5.e1", ".e1", "e1", "1e", "1e+", "1e-",
    "1e5", "1E5", "1e+5", "1e-5", "1e5.5", "1e5e5", "1e+-5", "1e5-5", "-.5e-1x", "1d5", "1f", "1e400", "-1e400",
    "1e-400", "-1e-400", "0e999999999999", "0.0e-99999999999999999999", "1e99999999999999999999",
    "1e-99999999999999999999", "1e2147483648", "1e-2147483648", "1e4294967296", "1.7976931348623157e308",
    "1.7976931348623158e308", "1.7976931348623159e308", "17976931348623157e292", "4.9e-324",
    "2.4703282292062327e-324", "2.4703282292062328e-324", "2.2250738585072011e-308", "2.2250738585072014e-308",
    "9007199254740993", "0.1", "0.3", "123456789012345678901234567890",
    "0.000000000000000000000000000000000000000000000001", "nan", "NAN", "inf", "-inf", "infinity", "nan(1)", "true",
    "false", "True", "FALSE", "tru", "truex", "true1", "truefalse", "falsetrue", "fals", "falsy", "1 0", "true false",
    " true", "t", "f", "+true", "yes", "on", "1 2 3 4 5 6", "1\t2\n3", "1.5 2.5", "1.52.5", "0 1 x 2", "\xC3\xA9",
    "1\xC2\xA0\x32", "\xA0\x31"};
// clang-format on

TEST(ValueReader, ReadsCornerCasesAsAStreamDoes) {
    Reference reference;
    for (const char* const text : corners) {
        ASSERT_NO_FATAL_FAILURE(ExpectAllAsAStream(reference, text));
    }
    ASSERT_NO_FATAL_FAILURE(ExpectAllAsAStream(reference, std::string("1\0002", 3)));
    ASSERT_NO_FATAL_FAILURE(ExpectAllAsAStream(reference, std::string("\0", 1)));
}

TEST(ValueReader, ReadsEveryShortTextAsAStreamDoes) {
    Reference reference;
    ForEachText("+-.0159eExX \tnaift", 4, [&](const std::string& text) {
        if (!testing::Test::HasFatalFailure()) {
            ExpectAllAsAStream(reference, text);
        }
    });
}

TEST(ValueReader, ReadsEveryShortDecimalAsAStreamDoes) {
    Reference reference;
    ForEachText("+-.09e ", 6, [&](const std::string& text) {
        if (!testing::Test::HasFatalFailure()) {
            ExpectAsAStream<double>(reference, text);
        }
    });
}

std::string RandomText(std::mt19937& random, std::string_view alphabet, std::size_t longest) {
    std::string text(random() % (longest + 1), ' ');
    for (char& character : text) {
        character = alphabet[random() % alphabet.size()];
    }
    return text;
}

TEST(ValueReader, ReadsLongRandomTextsAsAStreamDoes) {
    Reference reference;
    std::mt19937 random(4);
    for (int round = 0; round < 20000; ++round) {
        const std::string digits = RandomText(random, "0123456789", 30);
        const std::string fraction = RandomText(random, "0123456789", 30);
        const std::string exponent = std::to_string(static_cast<int>(random() % 800) - 400);
        ASSERT_NO_FATAL_FAILURE(ExpectAsAStream<double>(reference, digits + '.' + fraction + 'e' + exponent));
        ASSERT_NO_FATAL_FAILURE(ExpectAllAsAStream(reference, RandomText(random, "+-", 1) + digits));
        ASSERT_NO_FATAL_FAILURE(ExpectAllAsAStream(reference, RandomText(random, "0123456789+-.eE \ttrufals", 60)));
    }
}

TEST(ValueReader, ReadsEveryDoubleBackFromItsShortestAndItsLongestText) {
    Reference reference;
    std::mt19937_64 random(8);
    for (int round = 0; round < 20000; ++round) {
        const auto number = std::bit_cast<double>(random());
        std::array<char, 800> text{};
        if (std::isfinite(number)) {
            std::snprintf(text.data(), text.size(), "%.17g", number);
            ASSERT_NO_FATAL_FAILURE(ExpectAsAStream<double>(reference, text.data()));
            std::snprintf(text.data(), text.size(), "%.70e", number);
            ASSERT_NO_FATAL_FAILURE(ExpectAsAStream<double>(reference, text.data()));
        }
    }
}

TEST(ValueReader, LeavesAValueThatCannotBeReadAlone) {
    std::int32_t number = 7;
    double decimal = 7.5;
    bool truth = true;
    std::string_view word = "seven";
    EXPECT_FALSE(ValueReader("99999999999").Read(number));
    EXPECT_FALSE(ValueReader("1e999").Read(decimal));
    EXPECT_FALSE(ValueReader("False").Read(truth));
    EXPECT_FALSE(ValueReader("  ").ReadWord(word));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(decimal, 7.5);
    EXPECT_TRUE(truth);
    EXPECT_EQ(word, "seven");
}

TEST(ValueReader, ReadsNothingAfterAFailure) {
    ValueReader reader("x 5");
    std::int32_t number = 0;
    std::string_view word;
    EXPECT_FALSE(reader.Read(number));
    EXPECT_FALSE(reader.ReadWord(word));
    EXPECT_FALSE(reader.Read(number));
}

TEST(ValueReader, ReadsWordsBetweenAnyWhiteSpace) {
    ValueReader reader(" SDI1\tHDMI \r\v\f Optical");
    std::string_view word;
    std::vector<std::string_view> words;
    while (reader.ReadWord(word)) {
        words.push_back(word);
    }
    EXPECT_EQ(words, (std::vector<std::string_view>{"SDI1", "HDMI", "Optical"}));
}

TEST(ValueReader, ReadsAPointInEveryLocale) {
    const ForeignLocale locale;
    double number = 0;
    EXPECT_TRUE(ValueReader("1234.5").Read(number)) << locale.Name();
    EXPECT_EQ(number, 1234.5) << locale.Name();
    ValueReader comma("1,5");
    EXPECT_TRUE(comma.Read(number)) << locale.Name();
    EXPECT_EQ(number, 1.0) << locale.Name();
}

TEST(Timecode, IsPackedDigitByDigit) {
    std::uint32_t bcd = 0;
    EXPECT_TRUE(ParseTimecode("01:02:03:04", bcd));
    EXPECT_EQ(bcd, 0x01020304U);
    EXPECT_TRUE(ParseTimecode("23:59:59;29 and more", bcd));
    EXPECT_EQ(bcd, 0x23595929U);
    EXPECT_TRUE(ParseTimecode("99x88 77977", bcd));
    EXPECT_EQ(bcd, 0x99887777U);
}

TEST(Timecode, IsRefusedWhenADigitIsMissing) {
    std::uint32_t bcd = 5;
    for (const std::size_t at : {0U, 1U, 3U, 4U, 6U, 7U, 9U, 10U}) {
        for (const char wrong : {'a', ' ', ':', '/', '-', '\0', '\xB9'}) {
            std::string text = "01:02:03:04";
            text[at] = wrong;
            EXPECT_FALSE(ParseTimecode(text, bcd)) << testing::PrintToString(text);
        }
    }
    EXPECT_FALSE(ParseTimecode("01:02:03:0", bcd));
    EXPECT_FALSE(ParseTimecode(" 01:02:03:04", bcd));
    EXPECT_FALSE(ParseTimecode("", bcd));
    EXPECT_FALSE(ParseTimecode({}, bcd));
    EXPECT_EQ(bcd, 5U);
}

void ExpectVersionAsTheLibrary(const std::string& text) {
    int expected[2] = {};
    std::uint32_t actual[2] = {7, 7};
    const bool known = std::sscanf(text.c_str(), "%d.%d", &expected[0], &expected[1]) == 2;
    ASSERT_EQ(ParseVersionPair(text, actual[0], actual[1]), known) << testing::PrintToString(text);
    EXPECT_EQ(actual[0], known ? static_cast<std::uint32_t>(expected[0]) : 7U) << testing::PrintToString(text);
    EXPECT_EQ(actual[1], known ? static_cast<std::uint32_t>(expected[1]) : 7U) << testing::PrintToString(text);
}

TEST(VersionPair, IsReadAsTheLibraryReadsIt) {
    ForEachText("+-.05 x\t", 5, ExpectVersionAsTheLibrary);
    for (const char* const text :
         {"2.1", "2", "2.", "2. 1", "2 .1", " 12.34 rest", "-1.-2", "2147483647.-2147483648"}) {
        ExpectVersionAsTheLibrary(text);
    }
}

TEST(VersionPair, KeepsTheLowerBitsOfANumberThatIsTooLarge) {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    EXPECT_TRUE(ParseVersionPair("4294967297.-1", first, second));
    EXPECT_EQ(first, 1U);
    EXPECT_EQ(second, 0xFFFFFFFFU);
}

TEST(HexVersion, IsReadAsTheLibraryReadsIt) {
    ForEachText("+-0xX1fg ", 6, [](const std::string& text) {
        unsigned expected = 0;
        if (std::sscanf(text.c_str(), "0x%x", &expected) != 1) {
            expected = 0;
        }
        ASSERT_EQ(ParseHexVersion(text), expected) << testing::PrintToString(text);
    });
    EXPECT_EQ(ParseHexVersion("0x1A"), 0x1AU);
    EXPECT_EQ(ParseHexVersion("0xFFFFffff"), 0xFFFFFFFFU);
    EXPECT_EQ(ParseHexVersion("0x12 and more"), 0x12U);
}

TEST(HexVersion, IsZeroWhenItIsMalformedOrTooLarge) {
    for (const char* const text : {"", "1A", "0X1A", " 0x1A", "0x", "0xg", "x1", "0x100000000", "0x-100000000"}) {
        EXPECT_EQ(ParseHexVersion(text), 0U) << text;
    }
}

}  // namespace
}  // namespace Morquil
