#include "simulator/program/input_lines.h"

#include <gtest/gtest.h>

#include "simulator/program/script.h"

namespace Morquil::Simulator {
namespace {

using Lines = std::vector<std::string>;

TEST(InputLines, AreTheSameForEverySplit) {
    const std::string text = "lock\n\nset VIDEO PROC AMP Gain 12\r\nunlock";
    for (std::size_t size = 1; size <= text.size(); ++size) {
        Lines lines;
        InputLines input([&](std::string line) { lines.push_back(std::move(line)); });
        for (std::size_t at = 0; at < text.size(); at += size) {
            input.Feed(std::string_view(text).substr(at, size));
        }
        input.End();
        EXPECT_EQ(lines, (Lines{"lock", "", "set VIDEO PROC AMP Gain 12\r", "unlock"})) << size;
    }
}

TEST(InputLines, KeepNoMoreOfAnEndlessLineThanShowsThatItIsTooLong) {
    Lines lines;
    InputLines input([&](std::string line) { lines.push_back(std::move(line)); });
    for (int i = 0; i < 100; ++i) {
        input.Feed(std::string(1000, 'x'));
    }
    input.Feed("\nlock\n");
    input.End();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].size(), longestScriptLine + 1);
    EXPECT_EQ(ReadScriptLine(lines[0]).error, "the line is longer than 4096 bytes");
    EXPECT_EQ(lines[1], "lock");
}

TEST(InputLines, AreNotCarriedOutInPart) {
    EXPECT_TRUE(ReadScriptLine("lock" + std::string(longestScriptLine - 4, ' ')).line);
    EXPECT_FALSE(ReadScriptLine("lock" + std::string(longestScriptLine - 3, ' ')).line);
}

}  // namespace
}  // namespace Morquil::Simulator
