#include "protocol/text/name_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "protocol/text/ascii.h"

namespace Morquil {
namespace {

constexpr NameTable blockHeaders{"VIDEO INPUT", "VIDEO INPUT AVAILABILITY", "VIDEO OUTPUT", "VIDEO OUTPUT AVAILABILITY",
                                 "ALIGN",       "ALIGN AVAILABILITY",       "AUDIO",        "PRESET"};

// Names that differ in only one byte, at any place, and names of every length up to a long word.
constexpr NameTable keys{"size X left",
                         "size X right",
                         "size Y left",
                         "size Y right",
                         "Variable Aspect Ratio size X left",
                         "Variable Aspect Ratio size Y left",
                         "AudioIn1",
                         "AudioIn2",
                         "AudioIn11",
                         "AudioIn12",
                         "AudioIn21",
                         "a",
                         "b",
                         "ab",
                         "ba",
                         "aba",
                         "bab",
                         "abab",
                         "baba",
                         "ababa",
                         "babab",
                         "bababa",
                         "bababab",
                         "babababa",
                         "babababab"};

template <std::size_t N>
void ExpectEveryNameFound(const NameTable<N>& table) {
    for (std::size_t i = 0; i < N; ++i) {
        std::string upper(table[i]);
        std::string lower(table[i]);
        std::transform(upper.begin(), upper.end(), upper.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
        std::transform(lower.begin(), lower.end(), lower.begin(), FoldCase);
        EXPECT_EQ(table.Find(table[i]), i) << table[i];
        EXPECT_EQ(table.Find(upper), i) << upper;
        EXPECT_EQ(table.Find(lower), i) << lower;
    }
}

TEST(NameTable, FindsEveryNameInAnyCase) {
    ExpectEveryNameFound(blockHeaders);
    ExpectEveryNameFound(keys);
}

TEST(NameTable, FindsNoTextThatDiffersInOneByte) {
    for (std::size_t i = 0; i < keys.Size(); ++i) {
        for (std::size_t at = 0; at < keys[i].size(); ++at) {
            std::string text(keys[i]);
            text[at] = static_cast<char>(text[at] ^ 0x10);
            EXPECT_EQ(keys.Find(text), keys.Size()) << text;
            text[at] = static_cast<char>(keys[i][at] | 0x80);
            EXPECT_EQ(keys.Find(text), keys.Size()) << text;
        }
    }
}

TEST(NameTable, FindsNoLongerOrShorterText) {
    for (std::size_t i = 0; i < blockHeaders.Size(); ++i) {
        const std::string name(blockHeaders[i]);
        EXPECT_EQ(blockHeaders.Find(name + " "), blockHeaders.Size()) << name;
        EXPECT_EQ(blockHeaders.Find(name + '\0'), blockHeaders.Size()) << name;
        EXPECT_EQ(blockHeaders.Find(name.substr(1)), blockHeaders.Size()) << name;
        EXPECT_EQ(blockHeaders.Find(name.substr(0, name.size() - 1)), blockHeaders.Size()) << name;
    }
    EXPECT_EQ(blockHeaders.Find(""), blockHeaders.Size());
    EXPECT_EQ(blockHeaders.Find({}), blockHeaders.Size());
    EXPECT_EQ(blockHeaders.Find(std::string(1000, 'V')), blockHeaders.Size());
}

TEST(NameTable, FoldsTheCaseOfLettersOnly) {
    static constexpr NameTable marks{"[1]", "a@b"};
    EXPECT_EQ(marks.Find("[1]"), 0U);
    EXPECT_EQ(marks.Find("{1}"), 2U);
    EXPECT_EQ(marks.Find("A@B"), 1U);
    EXPECT_EQ(marks.Find("A`B"), 2U);
}

TEST(NameTable, ReadsOnlyTheTextItIsGiven) {
    for (std::size_t i = 0; i < keys.Size(); ++i) {
        // An address sanitizer detects a read before or after a text that fills its own allocation.
        const std::string_view name = keys[i];
        auto* const copy = new char[name.size()];
        std::memcpy(copy, name.data(), name.size());
        EXPECT_EQ(keys.Find({copy, name.size()}), i) << name;
        delete[] copy;
    }
}

TEST(NameTable, ReturnsZeroTerminatedNamesAndNothingBeyondTheLast) {
    EXPECT_EQ(blockHeaders.Size(), 8U);
    EXPECT_STREQ(blockHeaders[0].data(), "VIDEO INPUT");
    EXPECT_STREQ(blockHeaders[7].data(), "PRESET");
    EXPECT_STREQ(blockHeaders[8].data(), "");
    EXPECT_STREQ(blockHeaders[static_cast<std::size_t>(-1)].data(), "");
}

TEST(NameTable, IsSearchedAtCompileTimeToo) {
    static_assert(blockHeaders.Find("video output") == 2);
    static_assert(keys.Find("variable aspect ratio SIZE Y LEFT") == 5);
    static_assert(blockHeaders.Find("VIDEO") == blockHeaders.Size());
    static constexpr std::array<std::string_view, 2> names{"One", "Two"};
    static constexpr NameTable fromArray(names);
    static_assert(fromArray.Find("two") == 1);
}

TEST(Ascii, FoldsNothingButAsciiLetters) {
    for (int byte = 0; byte < 256; ++byte) {
        const bool upper = byte >= 'A' && byte <= 'Z';
        EXPECT_EQ(FoldCase(static_cast<char>(byte)), static_cast<char>(upper ? byte + 32 : byte)) << byte;
    }
}

TEST(Ascii, KnowsTheSixSpacesOfTheClassicLocale) {
    const std::string_view spaces = " \t\n\v\f\r";
    for (int byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        EXPECT_EQ(IsSpace(character), byte != 0 && spaces.find(character) != std::string_view::npos) << byte;
    }
}

TEST(Ascii, ComparesWholeTexts) {
    EXPECT_TRUE(EqualsIgnoringCase("Ping", "PING"));
    EXPECT_TRUE(EqualsIgnoringCase("", ""));
    EXPECT_FALSE(EqualsIgnoringCase("PING", "PINGS"));
    EXPECT_FALSE(EqualsIgnoringCase("\xC3\x84", "\xC3\xA4"));  // the two cases of a letter that is not ASCII
}

}  // namespace
}  // namespace Morquil
