#include "properties/value.h"

#include <gtest/gtest.h>

#include "properties/property.h"
#include "properties/suggestion.h"

namespace Morquil::Testing {
namespace {

using Properties::Checked;
using Properties::Confirmation;
using Properties::Confirms;
using Properties::FormatValue;
using Properties::Kind;
using Properties::ParseValue;
using Properties::Refusal;
using Properties::Value;
using Properties::ValueType;

const ValueType number{.kind = Kind::Number, .smallest = -5, .largest = 300};
const ValueType decimal{.kind = Kind::Decimal};
const ValueType yesNo{.kind = Kind::YesNo};
const ValueType timecode{.kind = Kind::Timecode};
const ValueType address{.kind = Kind::Address};
const ValueType text{.kind = Kind::Text, .mostBytes = 5};

const ValueType& TypeOf(const char* name) {
    return Properties::FindProperty(name)->type;
}

/// The accepted value; an empty text for a refused one.
Value ValueOf(const ValueType& type, std::string_view given) {
    const Checked checked = ParseValue(type, given);
    const Value* const value = std::get_if<Value>(&checked);
    EXPECT_NE(value, nullptr) << given;
    return value != nullptr ? *value : Value();
}

Refusal RefusalFor(const ValueType& type, std::string_view given) {
    const Checked checked = ParseValue(type, given);
    const Refusal* const refusal = std::get_if<Refusal>(&checked);
    return refusal != nullptr ? *refusal : Refusal{{}, "(taken)"};
}
std::string RefusalOf(const ValueType& type, std::string_view given) {
    return RefusalFor(type, given).text;
}

TEST(Values, EveryWordOfEveryPropertyReadsBack) {
    for (const Properties::Property& property : Properties::AllProperties()) {
        for (const Properties::NamedValue& named : property.type.words) {
            const Value value = ValueOf(property.type, named.word);
            EXPECT_EQ(FormatValue(property.type, value), named.word) << property.name;
        }
    }
}

TEST(Values, WordsAreReadInAnyCase) {
    const ValueType& mode = TypeOf("output.video-mode");
    EXPECT_EQ(ValueOf(mode, "1080PSF25"), ValueOf(mode, "1080PsF25"));
}

TEST(Values, AnUnknownWordIsRefusedWithTheNearest) {
    EXPECT_EQ(RefusalOf(TypeOf("output.sdi-mode"), "LevelC"), "'LevelC' is not an SDI mode; nearest: LevelA");
    EXPECT_EQ(RefusalOf(TypeOf("output.sdi-mode"), "x"), "'x' is not an SDI mode; there are LevelA, LevelB");
}

TEST(Values, NumbersHaveBounds) {
    EXPECT_EQ(ValueOf(number, "-5"), Value(std::int64_t{-5}));
    EXPECT_EQ(ValueOf(number, "+12"), Value(std::int64_t{12}));
    EXPECT_EQ(ValueOf(number, "0xff"), Value(std::int64_t{255}));
    EXPECT_EQ(RefusalOf(number, "301"), "301 is outside -5 to 300");
    for (const char* const wrong : {"", "+", "1.5", "12a", " 1", "99999999999999999999", "0x"}) {
        EXPECT_EQ(RefusalOf(number, wrong), "'" + std::string(wrong) + "' is not a whole number");
    }
}

TEST(Values, DecimalsAreWrittenAsShortAsTheyCanBe) {
    EXPECT_EQ(FormatValue(decimal, 1.0), "1.0");
    EXPECT_EQ(FormatValue(decimal, -0.25), "-0.25");
    EXPECT_EQ(FormatValue(decimal, 1.0000005), "1.000001");
    EXPECT_EQ(ValueOf(decimal, "1e2"), Value(100.0));
    for (const char* const wrong : {"", "nan", "inf", "1,5", "one"}) {
        EXPECT_NE(RefusalOf(decimal, wrong), "(taken)") << wrong;
    }
}

TEST(Values, DecimalsAreTheSameWhenTheWireMakesThemTheSame) {
    EXPECT_EQ(Confirms(Value(0.333333), 1.0 / 3), Confirmation::Yes);
    EXPECT_EQ(Confirms(Value(0.333331), 1.0 / 3), Confirmation::No);
}

TEST(Values, YesAndNoHaveManyNames) {
    for (const char* const yes : {"true", "Yes", "ON", "1"}) {
        EXPECT_EQ(ValueOf(yesNo, yes), Value(true)) << yes;
    }
    for (const char* const no : {"false", "No", "OFF", "0"}) {
        EXPECT_EQ(ValueOf(yesNo, no), Value(false)) << no;
    }
    EXPECT_EQ(RefusalOf(yesNo, "maybe"), "'maybe' is neither true nor false");
}

TEST(Values, TimecodesHaveADecimalDigitInEachFourBits) {
    EXPECT_EQ(ValueOf(timecode, "12:34:56:07"), Value(std::int64_t{0x12345607}));
    EXPECT_EQ(ValueOf(timecode, "12:34:56;07"), Value(std::int64_t{0x12345607}));
    EXPECT_EQ(FormatValue(timecode, std::int64_t{0x23595929}), "23:59:59:29");
    for (const char* const wrong : {"", "1:2:3:4", "24:00:00:00", "00:60:00:00", "00:00:0a:00", "00-00-00-00"}) {
        EXPECT_NE(RefusalOf(timecode, wrong), "(taken)") << wrong;
    }
}

TEST(Values, AddressesHaveTheirFirstNumberOnTop) {
    EXPECT_EQ(FormatValue(address, std::int64_t{3232238140}), "192.168.10.60");
    EXPECT_EQ(ValueOf(address, "192.168.10.60"), Value(std::int64_t{3232238140}));
    for (const char* const wrong : {"", "1.2.3", "1.2.3.256", "1.2.3.4.5", "a.b.c.d", "1..2.3"}) {
        EXPECT_NE(RefusalOf(address, wrong), "(taken)") << wrong;
    }
}

TEST(Values, TextsHaveNoLineEndsAndKeepTheirLimit) {
    EXPECT_EQ(ValueOf(text, "five!"), Value(std::string("five!")));
    EXPECT_EQ(RefusalOf(text, "sixsix"), "the text has 6 bytes, and at most 5 are kept");
    EXPECT_NE(RefusalOf(text, "a\nb"), "(taken)");
}

TEST(Values, AReportConfirmsTheSameValueOnly) {
    EXPECT_EQ(Confirms(Value(std::int64_t{3}), std::int64_t{3}), Confirmation::Yes);
    EXPECT_EQ(Confirms(Value(std::int64_t{4}), std::int64_t{3}), Confirmation::No);
    EXPECT_EQ(Confirms(Value(false), true), Confirmation::No);
    EXPECT_EQ(Confirms(std::nullopt, true), Confirmation::No);
}

TEST(Values, ATextInAnotherCaseOrAMissingEmptyTextIsLikelyConfirmed) {
    EXPECT_EQ(Confirms(Value(std::string("Rack")), std::string("Rack")), Confirmation::Yes);
    EXPECT_EQ(Confirms(Value(std::string("RACK")), std::string("Rack")), Confirmation::Likely);
    EXPECT_EQ(Confirms(std::nullopt, std::string()), Confirmation::Likely);
    EXPECT_EQ(Confirms(std::nullopt, std::string("Rack")), Confirmation::No);
    EXPECT_EQ(Confirms(Value(std::string("Van")), std::string("Rack")), Confirmation::No);
}

TEST(Values, ARefusalNamesTheNearestValue) {
    const Refusal above = RefusalFor(number, "301");
    EXPECT_EQ(above.reason, Refusal::Reason::OutOfRange);
    EXPECT_EQ(above.nearest, std::vector<Value>{std::int64_t{300}});
    EXPECT_EQ(RefusalFor(number, "-6").nearest, std::vector<Value>{std::int64_t{-5}});
    const Refusal word = RefusalFor(TypeOf("output.sdi-mode"), "LevelC");
    EXPECT_EQ(word.reason, Refusal::Reason::Malformed);
    EXPECT_EQ(word.nearest, std::vector<Value>{std::int64_t{0}});
    EXPECT_TRUE(RefusalFor(TypeOf("output.sdi-mode"), "x").nearest.empty());
}

TEST(Suggestions, PreferTheSameBeginningAmongEqualOnes) {
    constexpr std::string_view words[] = {"720p60", "2080p60", "1080p50"};
    EXPECT_EQ(Properties::NearestFirst("1080p60", words, 2), (std::vector<std::size_t>{2, 1}));
    EXPECT_EQ(Properties::NearestFirst("ab", std::span<const std::string_view>(), 2), std::vector<std::size_t>());
}

TEST(Suggestions, CountEdits) {
    EXPECT_EQ(Properties::EditDistance("", "abc"), 3u);
    EXPECT_EQ(Properties::EditDistance("kitten", "sitting"), 3u);
    EXPECT_EQ(Properties::EditDistance("GAIN", "gain"), 0u);
}

TEST(Suggestions, AreTheFirstOfTheNearestOrNone) {
    constexpr std::string_view words[] = {"Input", "Black", "Still"};
    EXPECT_EQ(Properties::Nearest("Stil", words), "Still");
    EXPECT_EQ(Properties::Nearest("xyz", words), "");
}

}  // namespace
}  // namespace Morquil::Testing
