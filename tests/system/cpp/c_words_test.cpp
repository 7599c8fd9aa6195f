// The words of enumerations in C: the same as in C++.
#include "tests/system/cpp/c_words.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "morquil.hpp"

namespace Morquil::Testing {
namespace {

int NumberOfEnumeration(std::string_view name) {
    int number = 0;
    while (CNameOfEnumeration(number) != nullptr && CNameOfEnumeration(number) != name) {
        ++number;
    }
    return number;
}

std::string InUpperCase(std::string text) {
    for (char& c : text) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return text;
}

template <class Enumeration>
class CWords : public testing::Test {};

using Enumerations =
    testing::Types<morquil::VideoMode, morquil::AspectRatio, morquil::AFDInsertType, morquil::AudioSelect>;
TYPED_TEST_SUITE(CWords, Enumerations);

TYPED_TEST(CWords, AreThoseOfCpp) {
    using Words = morquil::Words<TypeParam>;
    const int own = NumberOfEnumeration(Words::name);
    ASSERT_NE(CNameOfEnumeration(own), nullptr) << Words::name;
    EXPECT_EQ(CCountWords(own), static_cast<int>(std::size(Words::all)));
    for (const auto& word : Words::all) {
        const int value = static_cast<int>(word.value);
        const char* const text = CTextOf(own, value);
        ASSERT_NE(text, nullptr) << word.text;
        EXPECT_EQ(text, word.text);
        EXPECT_EQ(CValueOf(own, text), value) << word.text;
        EXPECT_EQ(CValueOf(own, InUpperCase(text).c_str()), value) << word.text;
    }
}

TYPED_TEST(CWords, AreNullForOtherValuesAndLeaveTheValueForOtherTexts) {
    const int own = NumberOfEnumeration(morquil::Words<TypeParam>::name);
    EXPECT_EQ(CTextOf(own, 99), nullptr);
    EXPECT_EQ(CTextOf(own, -1), nullptr);
    for (const char* const other : {"", "x", "1080i5", "1080i500"}) {
        EXPECT_EQ(CValueOf(own, other), -1) << other;
    }
}

}  // namespace
}  // namespace Morquil::Testing
