#include "transport/sent_texts.h"

#include <gtest/gtest.h>

#include <string>

namespace Morquil {
namespace {

TEST(SentTexts, AreEmptyAtFirst) {
    const SentTexts texts;
    EXPECT_TRUE(texts.IsEmpty());
    EXPECT_FALSE(texts.Contains("GENLOCK:\n\n"));
    EXPECT_FALSE(texts.Contains(""));
}

TEST(SentTexts, ContainWhatWasAppendedByteForByte) {
    SentTexts texts;
    texts.Append("GENLOCK:\nLine offset: 5\n\n");
    EXPECT_FALSE(texts.IsEmpty());
    EXPECT_TRUE(texts.Contains("GENLOCK:\nLine offset: 5\n\n"));
    for (const char* const other : {"", "GENLOCK:\nLine offset: 5\n", "genlock:\nLine offset: 5\n\n",
                                    "GENLOCK:\nLine offset: 5\n\n\n", "GENLOCK:\nLine offset: 50\n\n"}) {
        EXPECT_FALSE(texts.Contains(other)) << other;
    }
}

TEST(SentTexts, CompareBeyondAZeroByte) {
    SentTexts texts;
    texts.Append(std::string("a\0b", 3));
    EXPECT_FALSE(texts.Contains(std::string("a\0c", 3)));
    EXPECT_TRUE(texts.Contains(std::string("a\0b", 3)));
}

TEST(SentTexts, DropEverythingThroughTheAnsweredText) {
    SentTexts texts;
    for (const char* const text : {"a", "b", "c", "d"}) {
        texts.Append(text);
    }
    texts.DropThrough("b");
    EXPECT_FALSE(texts.Contains("a"));
    EXPECT_FALSE(texts.Contains("b"));
    EXPECT_TRUE(texts.Contains("c"));
    EXPECT_TRUE(texts.Contains("d"));
    texts.DropThrough("d");
    EXPECT_TRUE(texts.IsEmpty());
}

TEST(SentTexts, DropThroughTheFirstOfTwoEqualTexts) {
    SentTexts texts;
    for (const char* const text : {"a", "b", "a", "c"}) {
        texts.Append(text);
    }
    texts.DropThrough("a");
    EXPECT_TRUE(texts.Contains("b"));
    EXPECT_TRUE(texts.Contains("a"));
    texts.DropThrough("a");
    EXPECT_FALSE(texts.Contains("b"));
    EXPECT_FALSE(texts.Contains("a"));
    EXPECT_TRUE(texts.Contains("c"));
}

TEST(SentTexts, DropNothingThroughAnUnknownText) {
    SentTexts texts;
    texts.DropThrough("a");
    EXPECT_TRUE(texts.IsEmpty());
    texts.Append("a");
    texts.DropThrough("b");
    texts.DropThrough("");
    EXPECT_TRUE(texts.Contains("a"));
}

TEST(SentTexts, DropTheOldestBeyondTheirLimit) {
    SentTexts texts;
    for (std::size_t count = 0; count <= SentTexts::limit; ++count) {
        texts.Append(std::to_string(count));
    }
    EXPECT_FALSE(texts.Contains("0"));
    EXPECT_TRUE(texts.Contains("1"));
    EXPECT_TRUE(texts.Contains(std::to_string(SentTexts::limit)));
}

}  // namespace
}  // namespace Morquil
