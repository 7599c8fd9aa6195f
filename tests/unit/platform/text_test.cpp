#include "platform/text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/kit/owned_bstr.h"

namespace Morquil::Testing {
namespace {

const std::string replacement = "\xEF\xBF\xBD";

// One character in both encodings.
struct Character {
    const char* utf8;
    Utf16 utf16;
};

Utf16 Units(std::initializer_list<unsigned> units) {
    Utf16 text;
    for (const unsigned unit : units) {
        text.push_back(static_cast<OLECHAR>(unit));
    }
    return text;
}

// The first and the last character of every UTF-8 length, and the neighbours of the surrogates.
const Character characters[] = {
    {"\x01", Units({0x01})},
    {"\x7F", Units({0x7F})},
    {"\xC2\x80", Units({0x80})},
    {"\xDF\xBF", Units({0x7FF})},
    {"\xE0\xA0\x80", Units({0x800})},
    {"\xED\x9F\xBF", Units({0xD7FF})},
    {"\xEE\x80\x80", Units({0xE000})},
    {"\xEF\xBF\xBF", Units({0xFFFF})},
    {"\xF0\x90\x80\x80", Units({0xD800, 0xDC00})},
    {"\xF0\xBF\xBF\xBF", Units({0xD8BF, 0xDFFF})},
    {"\xF1\x80\x80\x80", Units({0xD8C0, 0xDC00})},
    {"\xF4\x8F\xBF\xBF", Units({0xDBFF, 0xDFFF})},
};

std::string Utf8(const Utf16& text) {
    return Utf8FromBstr(OwnedBstr(text).Get());
}
Utf16 FromUtf8(std::string_view text) {
    return OwnedBstr(BstrFromUtf8(text)).Units();
}
std::string Shortened(const Utf16& text, std::size_t limit) {
    return ShortenedUtf8(OwnedBstr(text).Get(), limit);
}

template <class Text>
Text Repeat(const Text& piece, std::size_t times) {
    Text text;
    for (std::size_t i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

TEST(Utf8FromBstr, WritesTheFirstAndLastCharacterOfEveryLength) {
    for (const Character& character : characters) {
        EXPECT_EQ(Utf8(character.utf16), character.utf8);
    }
}

TEST(Utf8FromBstr, ReturnsEmptyTextForNullAndEmpty) {
    EXPECT_EQ(Utf8FromBstr(nullptr), "");
    EXPECT_EQ(Utf8(Utf16{}), "");
}

TEST(Utf8FromBstr, KeepsZeroUnits) {
    EXPECT_EQ(Utf8(Units({'a', 0, 'b'})), std::string("a\0b", 3));
}

TEST(Utf8FromBstr, ReplacesEachUnpairedSurrogate) {
    EXPECT_EQ(Utf8(Units({0xD800})), replacement);
    EXPECT_EQ(Utf8(Units({0xDFFF})), replacement);
    EXPECT_EQ(Utf8(Units({0xD800, 'a'})), replacement + "a");
    EXPECT_EQ(Utf8(Units({0xDC00, 0xD800})), replacement + replacement);
    EXPECT_EQ(Utf8(Units({0xD800, 0xD800, 0xDC00})), replacement + "\xF0\x90\x80\x80");
}

TEST(BstrFromUtf8, ReadsTheFirstAndLastCharacterOfEveryLength) {
    for (const Character& character : characters) {
        EXPECT_EQ(FromUtf8(character.utf8), character.utf16) << character.utf8;
    }
}

TEST(BstrFromUtf8, HasExactlyTheConvertedLength) {
    const OwnedBstr text(BstrFromUtf8("a\xC3\xA9\xF0\x90\x80\x80"));

    EXPECT_EQ(SysStringLen(text.Get()), 4U);
    EXPECT_EQ(text.Get()[4], 0);
}

TEST(BstrFromUtf8, ReturnsAnEmptyTextForAnEmptyOne) {
    const OwnedBstr text(BstrFromUtf8(""));

    ASSERT_NE(text.Get(), nullptr);
    EXPECT_EQ(SysStringLen(text.Get()), 0U);
}

TEST(BstrFromUtf8, KeepsZeroBytes) {
    EXPECT_EQ(FromUtf8(std::string_view("a\0b", 3)), Units({'a', 0, 'b'}));
}

struct Malformed {
    const char* bytes;
    std::size_t replacements;
};

TEST(BstrFromUtf8, ReplacesMalformedBytesAndReadsOn) {
    const Malformed cases[] = {
        {"\x80", 1},         {"\xBF\xBF", 2},
        {"\xC0\x80", 2},     {"\xC1\xBF", 2},
        {"\xC3", 1},         {"\xE0\x9F\xBF", 3},
        {"\xE2\x82", 1},     {"\xED\xA0\x80", 3},
        {"\xED\xBF\xBF", 3}, {"\xF0\x8F\xBF\xBF", 4},
        {"\xF0\x9F\x98", 1}, {"\xF4\x90\x80\x80", 4},
        {"\xF5\x80\x80", 3}, {"\xFE", 1},
        {"\xFF\xFF", 2},     {"\xC3\xC3", 2},
        {"\xE2\xE2\x82", 2}, {"\xF0\x9F\xF0\x9F", 2},
    };
    for (const Malformed& malformed : cases) {
        const Utf16 expected = Repeat(Units({0xFFFD}), malformed.replacements);
        EXPECT_EQ(FromUtf8(malformed.bytes), expected) << testing::PrintToString(malformed.bytes);
        EXPECT_EQ(FromUtf8(std::string(malformed.bytes) + "z"), expected + Units({'z'}))
            << testing::PrintToString(malformed.bytes);
    }
}

TEST(BstrFromUtf8, ReadsBackWhatUtf8FromBstrWrote) {
    Utf16 all;
    for (const Character& character : characters) {
        all += character.utf16;
    }

    EXPECT_EQ(FromUtf8(Utf8(all)), all);
}

TEST(ShortenedUtf8, LeavesATextThatFitsWithItsTerminator) {
    EXPECT_EQ(Shortened(Repeat(Units({'x'}), 50), 51), std::string(50, 'x'));
    EXPECT_EQ(ShortenedUtf8(nullptr, 51), "");
    EXPECT_EQ(Shortened(Utf16{}, 51), "");
}

TEST(ShortenedUtf8, CutsAtTheEnd) {
    Utf16 digits;
    for (unsigned i = 0; i < 60; ++i) {
        digits.push_back(static_cast<OLECHAR>('0' + i % 10));
    }

    EXPECT_EQ(Shortened(digits, 51), Utf8(digits.substr(0, 50)));
}

TEST(ShortenedUtf8, FillsTheLimitWithWholeCharacters) {
    for (const Character& character : characters) {
        const std::string utf8 = character.utf8;
        for (std::size_t limit = 1; limit <= 70; ++limit) {
            EXPECT_EQ(Shortened(Repeat(character.utf16, 400), limit), Repeat(utf8, (limit - 1) / utf8.size()))
                << testing::PrintToString(utf8) << " limit " << limit;
        }
    }
}

TEST(ShortenedUtf8, FitsWhateverIsAtTheCut) {
    for (const Character& character : characters) {
        for (std::size_t before = 0; before <= 60; ++before) {
            const std::string utf8 = character.utf8;
            const Utf16 text = Repeat(Units({'x'}), before) + character.utf16;
            const bool fits = before + utf8.size() < 51;
            const std::string expected =
                fits ? std::string(before, 'x') + utf8 : std::string(std::min<std::size_t>(before, 50), 'x');
            EXPECT_EQ(Shortened(text, 51), expected) << before << " before " << testing::PrintToString(utf8);
        }
    }
}

TEST(ShortenedUtf8, DropsTheHalfOfAPairThatTheCutItselfMade) {
    const Utf16 pair = Units({0xD83D, 0xDE00});

    EXPECT_EQ(Shortened(pair, 4), "");
    EXPECT_EQ(Shortened(Units({'a'}) + pair, 5), "a");
    EXPECT_EQ(Shortened(Units({'a'}) + pair, 6), "a\xF0\x9F\x98\x80");
}

TEST(ShortenedUtf8, ReplacesOnlyWhatWasUnpairedBefore) {
    const Utf16 text = Units({0xD83D, 'a', 0xDE00, 0xD83D});

    EXPECT_EQ(Shortened(text, 11), replacement + "a" + replacement + replacement);
    EXPECT_EQ(Shortened(text, 10), replacement + "a" + replacement);
    EXPECT_EQ(Shortened(text, 7), replacement + "a");
}

TEST(ShortenedUtf8, ShortensByAQuarterOfTheExcess) {
    // 12 bytes, limit 4: (12 - 4 - 1) / 4 is 1 unit, then one by one, and "c" goes with the wide ones before it.
    const Utf16 text = Units({'a', 0x20AC, 0x20AC, 0x20AC, 'b', 'c'});

    EXPECT_EQ(Shortened(text, 4), "a");
    EXPECT_EQ(Shortened(text, 5), "a\xE2\x82\xAC");
}

TEST(ShortenedUtf8, ReturnsEmptyTextWhereNothingFits) {
    EXPECT_EQ(Shortened(Units({'a'}), 1), "");
    EXPECT_EQ(Shortened(Units({'a'}), 0), "");
    EXPECT_EQ(Shortened(Utf16{}, 0), "");
}

TEST(ShortenedUtf8, ShortensAVeryLongText) {
    EXPECT_EQ(Shortened(Repeat(Units({0x20AC}), 200000), 1024), Repeat(std::string("\xE2\x82\xAC"), 341));
}

}  // namespace
}  // namespace Morquil::Testing
