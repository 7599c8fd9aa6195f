#include "protocol/text/line_buffer.h"

#include <gtest/gtest.h>

#include <string>

namespace Morquil {
namespace {

TEST(LineBuffer, KeepsPiecesOneAfterTheOther) {
    LineBuffer line;
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_EQ(line.Append("Ga"), "");
    EXPECT_EQ(line.Append(""), "");
    EXPECT_EQ(line.Append("in: 1"), "");
    EXPECT_EQ(line.Text(), "Gain: 1");
    line.Clear();
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_EQ(line.Text(), "");
}

TEST(LineBuffer, TakesWhatFitsAndReturnsTheRest) {
    LineBuffer line;
    const std::string bytes = std::string(LineBuffer::capacity, 'x') + "rest";
    EXPECT_EQ(line.Append(bytes), "rest");
    EXPECT_TRUE(line.IsFull());
    EXPECT_EQ(line.Append("more"), "more");
    EXPECT_EQ(line.Text(), std::string(LineBuffer::capacity, 'x'));
}

}  // namespace
}  // namespace Morquil
