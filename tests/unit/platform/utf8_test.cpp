#include "platform/utf8.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace Morquil {
namespace {

/// The straightforward definition: characters are added from the start while they fit.
std::size_t PrefixFromTheStart(std::string_view text, std::size_t limit) {
    std::size_t length = 0;
    while (length < text.size()) {
        const Utf8Character character = FirstUtf8Character(text.substr(length));
        const std::size_t next = length + (character.isWellFormed ? character.size : 1);
        if (next > limit) {
            break;
        }
        length = next;
    }
    return length;
}

TEST(Utf8Prefix, KeepsATextThatFits) {
    EXPECT_EQ(Utf8Prefix("", 0), 0U);
    EXPECT_EQ(Utf8Prefix("abc", 3), 3U);
    EXPECT_EQ(Utf8Prefix("abc", 49), 3U);
    EXPECT_EQ(Utf8Prefix("ab\xE2\x82", 4), 4U);  // an unfinished character that is not cut
}

TEST(Utf8Prefix, NeverSplitsACharacter) {
    EXPECT_EQ(Utf8Prefix("abc", 2), 2U);
    EXPECT_EQ(Utf8Prefix("a\xC3\xA9", 2), 1U);
    EXPECT_EQ(Utf8Prefix("a\xE2\x82\xAC", 2), 1U);
    EXPECT_EQ(Utf8Prefix("a\xE2\x82\xAC", 3), 1U);
    EXPECT_EQ(Utf8Prefix("a\xF0\x9F\x98\x80", 2), 1U);
    EXPECT_EQ(Utf8Prefix("a\xF0\x9F\x98\x80", 3), 1U);
    EXPECT_EQ(Utf8Prefix("a\xF0\x9F\x98\x80", 4), 1U);
    EXPECT_EQ(Utf8Prefix("a\xF0\x9F\x98\x80!", 5), 5U);
    EXPECT_EQ(Utf8Prefix("\xF0\x9F\x98\x80", 3), 0U);
}

TEST(Utf8Prefix, CutsMalformedTextAtTheLimit) {
    EXPECT_EQ(Utf8Prefix("\x80\x80\x80\x80\x80\x80", 4), 4U);      // only continuations
    EXPECT_EQ(Utf8Prefix("ab\xE2\x82", 3), 3U);                    // a character that the text's end splits
    EXPECT_EQ(Utf8Prefix("\xC0\x80", 1), 1U);                      // overlong
    EXPECT_EQ(Utf8Prefix("\xE0\x80\x80", 2), 2U);                  // overlong
    EXPECT_EQ(Utf8Prefix("\xED\xA0\x80", 1), 1U);                  // a surrogate
    EXPECT_EQ(Utf8Prefix("\xF4\x90\x80\x80", 2), 2U);              // beyond the last character
    EXPECT_EQ(Utf8Prefix("\xF8\x88\x80\x80\x80", 3), 3U);          // five bytes
    EXPECT_EQ(Utf8Prefix("\xF0\x9F\x98\x80\x80\x80\x80", 6), 6U);  // surplus continuations
    EXPECT_EQ(Utf8Prefix("\xE2\xE2\x82\xAC", 2), 1U);              // a lead byte after a lead byte
}

TEST(Utf8Prefix, AgreesWithACountFromTheStartForEveryTextOfFiveBytes) {
    const std::string_view alphabet("a\x80\x9F\xA0\xBF\xC2\xE0\xE2\xED\xF0\xF4\xFF", 12);
    std::string text(5, ' ');
    for (std::size_t number = 0; number < std::size_t{12} * 12 * 12 * 12 * 12; ++number) {
        std::size_t digits = number;
        for (char& character : text) {
            character = alphabet[digits % alphabet.size()];
            digits /= alphabet.size();
        }
        for (std::size_t limit = 0; limit <= text.size(); ++limit) {
            ASSERT_EQ(Utf8Prefix(text, limit), PrefixFromTheStart(text, limit))
                << testing::PrintToString(text) << limit;
        }
    }
}

}  // namespace
}  // namespace Morquil
