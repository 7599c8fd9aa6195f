#include "protocol/text/split_line.h"

#include <gtest/gtest.h>

#include <string_view>

namespace Morquil {
namespace {

void ExpectSplit(std::string_view line, std::string_view key, std::string_view value) {
    const KeyAndValue parts = SplitLine(line);
    EXPECT_EQ(parts.key, key) << line;
    EXPECT_EQ(parts.value, value) << line;
}

TEST(SplitLine, CutsALineAtItsColon) {
    ExpectSplit("Gain: 5", "Gain", "5");
    ExpectSplit("Gain:5", "Gain", "5");
    ExpectSplit("Start: 01:02:03:04", "Start", "01:02:03:04");
    ExpectSplit("Model name: A B ", "Model name", "A B ");
}

TEST(SplitLine, PassesOverSpacesAndColonsBeforeEither) {
    ExpectSplit("  Gain:  : 5", "Gain", "5");
    ExpectSplit("Gain : 5", "Gain ", "5");
}

TEST(SplitLine, TakesTheValueFromTheSecondCharacterOfAKeyAfterAColon) {
    ExpectSplit(":Gain: 5", "Gain: 5", "ain: 5");
    ExpectSplit(" : Gain", "Gain", "ain");
    ExpectSplit(":G: 5", "G", "5");
}

TEST(SplitLine, ReturnsNoValueWhereThereIsNone) {
    ExpectSplit("", "", "");
    ExpectSplit("Gain", "Gain", "");
    ExpectSplit("Gain:", "Gain", "");
    ExpectSplit("Gain: :", "Gain", "");
    ExpectSplit(":", "", "");
    ExpectSplit(":G", "G", "");
}

}  // namespace
}  // namespace Morquil
