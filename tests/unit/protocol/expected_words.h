#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Morquil::Testing {

struct ExpectedWord {
    std::int64_t value;
    const char* word;
};

inline std::string InUpperCase(std::string text) {
    for (char& character : text) {
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
    return text;
}

/// Every word is found at its value, in any case, and printed from it; no others exist.
template <class Vocabulary>
void ExpectWords(const std::vector<ExpectedWord>& rows) {
    const auto& words = Vocabulary::words;
    ASSERT_EQ(words.Size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string word = rows[i].word;
        EXPECT_EQ(rows[i].value, static_cast<std::int64_t>(i)) << word;
        EXPECT_EQ(words[i], word);
        EXPECT_EQ(words.Find(word), i) << word;
        EXPECT_EQ(words.Find(InUpperCase(word)), i) << word;
        EXPECT_EQ(words.Find(word + " "), rows.size()) << word;
        EXPECT_EQ(words.Find(" " + word), rows.size()) << word;
        EXPECT_EQ(words.Find(word.substr(0, word.size() - 1) + "~"), rows.size()) << word;
    }
    EXPECT_EQ(words.Find(""), rows.size());
    EXPECT_EQ(words.Find("Unknown"), rows.size());
}

}  // namespace Morquil::Testing
