#include "protocol/line_buffer.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Morquil {
namespace {

/// A run that fills its own allocation, or stands inside of one: an address checker sees what is read around it.
void AppendFrom(LineBuffer& line, std::size_t inFront, const std::string& run, std::size_t behind) {
    const std::string received = std::string(inFront, '<') + run + std::string(behind, '>');
    const std::string_view view = std::string_view(received).substr(inFront, run.size());
    line.AppendRun(received, view, view.find(':'));
}

TEST(LineBuffer, KeepsRunsWhateverStandsAroundThem) {
    for (const std::size_t around : {0U, 1U, 31U, 32U, 100U}) {
        for (const std::size_t length : {0U, 1U, 15U, 31U, 32U, 33U, 120U}) {
            LineBuffer line;
            AppendFrom(line, around, std::string(length, 'a'), 0);
            AppendFrom(line, 0, std::string(length, 'b'), around);
            AppendFrom(line, around, "c", around);
            EXPECT_EQ(line.Text(), std::string(length, 'a') + std::string(length, 'b') + 'c') << around;
        }
    }
}

TEST(LineBuffer, KnowsThePlaceOfItsFirstColon) {
    LineBuffer line;
    AppendFrom(line, 0, "Ga", 0);
    EXPECT_EQ(line.Colon(), LineBuffer::noColon);
    AppendFrom(line, 0, "in: 1", 0);
    AppendFrom(line, 0, "0:00", 0);
    EXPECT_EQ(line.Colon(), 4U);
    EXPECT_TRUE(line.IsPlain());
    line.Clear();
    EXPECT_EQ(line.Colon(), LineBuffer::noColon);
    EXPECT_TRUE(line.IsEmpty());
}

TEST(LineBuffer, TakesWhatFitsAndReturnsTheRest) {
    LineBuffer line;
    const std::string bytes(300, 'x');
    EXPECT_EQ(line.Append(bytes).size(), 300 - LineBuffer::capacity);
    EXPECT_TRUE(line.IsFull());
    EXPECT_FALSE(line.IsPlain());
    EXPECT_EQ(line.Text(), bytes.substr(0, LineBuffer::capacity));
    line.Clear();
    EXPECT_TRUE(line.IsPlain());
}

}  // namespace
}  // namespace Morquil
