#include "command/properties/value.h"

#include <gtest/gtest.h>

#include "command/arguments/exit_code.h"
#include "command/properties/property.h"
#include "command/properties/suggestion.h"

namespace Morquil::Testing {
namespace {

using Command::FormatValue;
using Command::Kind;
using Command::ParseValue;
using Command::UsageFailure;
using Command::Value;
using Command::ValueType;

const ValueType number{.kind = Kind::Number, .smallest = -5, .largest = 300};
const ValueType decimal{.kind = Kind::Decimal};
const ValueType yesNo{.kind = Kind::YesNo};
const ValueType timecode{.kind = Kind::Timecode};
const ValueType address{.kind = Kind::Address};
const ValueType text{.kind = Kind::Text, .mostBytes = 5};

std::string RefusalOf(const ValueType& type, const std::string& given) {
    try {
        ParseValue(type, given);
        return "(taken)";
    } catch (const UsageFailure& failure) {
        return failure.what();
    }
}

TEST(Values, EveryWordOfEveryPropertyReadsBack) {
    for (const Command::Property& property : Command::AllProperties()) {
        for (const Command::NamedValue& named : property.type.words) {
            const Value value = ParseValue(property.type, named.word);
            EXPECT_EQ(FormatValue(property.type, value), named.word) << property.name;
        }
    }
}

TEST(Values, WordsAreReadInAnyCase) {
    const ValueType& mode = Command::FindProperty("output.video-mode").type;
    EXPECT_EQ(ParseValue(mode, "1080PSF25"), ParseValue(mode, "1080PsF25"));
}

TEST(Values, AnUnknownWordIsRefusedWithTheNearest) {
    EXPECT_EQ(RefusalOf(Command::FindProperty("output.sdi-mode").type, "LevelC"),
              "'LevelC' is not an SDI mode; nearest: LevelA");
    EXPECT_EQ(RefusalOf(Command::FindProperty("output.sdi-mode").type, "x"),
              "'x' is not an SDI mode; there are LevelA, LevelB");
}

TEST(Values, NumbersHaveBounds) {
    EXPECT_EQ(ParseValue(number, "-5"), Value(std::int64_t{-5}));
    EXPECT_EQ(ParseValue(number, "+12"), Value(std::int64_t{12}));
    EXPECT_EQ(ParseValue(number, "0xff"), Value(std::int64_t{255}));
    EXPECT_EQ(RefusalOf(number, "301"), "301 is outside -5 to 300");
    for (const char* const wrong : {"", "+", "1.5", "12a", " 1", "99999999999999999999", "0x"}) {
        EXPECT_EQ(RefusalOf(number, wrong), "'" + std::string(wrong) + "' is not a whole number");
    }
}

TEST(Values, DecimalsAreWrittenAsShortAsTheyCanBe) {
    EXPECT_EQ(FormatValue(decimal, 1.0), "1.0");
    EXPECT_EQ(FormatValue(decimal, -0.25), "-0.25");
    EXPECT_EQ(FormatValue(decimal, 1.0000005), "1.000001");
    EXPECT_EQ(ParseValue(decimal, "1e2"), Value(100.0));
    for (const char* const wrong : {"", "nan", "inf", "1,5", "one"}) {
        EXPECT_NE(RefusalOf(decimal, wrong), "(taken)") << wrong;
    }
}

TEST(Values, DecimalsAreTheSameWhenTheWireMakesThemTheSame) {
    EXPECT_TRUE(Command::IsSame(1.0 / 3, 0.333333));
    EXPECT_FALSE(Command::IsSame(1.0 / 3, 0.333331));
}

TEST(Values, YesAndNoHaveManyNames) {
    for (const char* const yes : {"true", "Yes", "ON", "1"}) {
        EXPECT_EQ(ParseValue(yesNo, yes), Value(true)) << yes;
    }
    for (const char* const no : {"false", "No", "OFF", "0"}) {
        EXPECT_EQ(ParseValue(yesNo, no), Value(false)) << no;
    }
    EXPECT_EQ(RefusalOf(yesNo, "maybe"), "'maybe' is neither true nor false");
}

TEST(Values, TimecodesHaveADecimalDigitInEachFourBits) {
    EXPECT_EQ(ParseValue(timecode, "12:34:56:07"), Value(std::int64_t{0x12345607}));
    EXPECT_EQ(ParseValue(timecode, "12:34:56;07"), Value(std::int64_t{0x12345607}));
    EXPECT_EQ(FormatValue(timecode, std::int64_t{0x23595929}), "23:59:59:29");
    for (const char* const wrong : {"", "1:2:3:4", "24:00:00:00", "00:60:00:00", "00:00:0a:00", "00-00-00-00"}) {
        EXPECT_NE(RefusalOf(timecode, wrong), "(taken)") << wrong;
    }
}

TEST(Values, AddressesHaveTheirFirstNumberOnTop) {
    EXPECT_EQ(FormatValue(address, std::int64_t{3232238140}), "192.168.10.60");
    EXPECT_EQ(ParseValue(address, "192.168.10.60"), Value(std::int64_t{3232238140}));
    for (const char* const wrong : {"", "1.2.3", "1.2.3.256", "1.2.3.4.5", "a.b.c.d", "1..2.3"}) {
        EXPECT_NE(RefusalOf(address, wrong), "(taken)") << wrong;
    }
}

TEST(Values, TextsHaveNoLineEndsAndKeepTheirLimit) {
    EXPECT_EQ(ParseValue(text, "five!"), Value(std::string("five!")));
    EXPECT_EQ(RefusalOf(text, "sixsix"), "the text has 6 bytes, and at most 5 are kept");
    EXPECT_NE(RefusalOf(text, "a\nb"), "(taken)");
}

TEST(Suggestions, CountEdits) {
    EXPECT_EQ(Command::EditDistance("", "abc"), 3u);
    EXPECT_EQ(Command::EditDistance("kitten", "sitting"), 3u);
    EXPECT_EQ(Command::EditDistance("GAIN", "gain"), 0u);
}

TEST(Suggestions, AreTheFirstOfTheNearestOrNone) {
    constexpr std::string_view words[] = {"Input", "Black", "Still"};
    EXPECT_EQ(Command::Nearest("Stil", words), "Still");
    EXPECT_EQ(Command::Nearest("xyz", words), "");
}

}  // namespace
}  // namespace Morquil::Testing
