#include "simulator/text/escaped_text.h"

#include <gtest/gtest.h>

namespace Morquil::Simulator {
namespace {

TEST(EscapedText, WritesAStringOfTheCLanguage) {
    EXPECT_EQ(Escaped("a\n\r\t\"\\"), R"("a\n\r\t\"\\")");
    EXPECT_EQ(Escaped(std::string("\0001\xff", 3)), R"("\0001\377")");
}

TEST(EscapedText, ReadsBackEveryByteAfterEveryOther) {
    std::string bytes;
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            bytes += {static_cast<char>(first), static_cast<char>(second)};
        }
    }
    EXPECT_EQ(Unescaped(Escaped(bytes)), bytes);
}

TEST(EscapedText, RefusesWhatIsNotAString) {
    for (const char* text : {"", "a", "\"", "a\"", "\"a", "\"\\\"", "\"\\x41\"", "\"\\12\"", "\"\\400\"", "\"a\"b\""}) {
        EXPECT_EQ(Unescaped(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace Morquil::Simulator
