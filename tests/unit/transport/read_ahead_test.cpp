#include "transport/read_ahead.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Morquil {
namespace {

/// A system whose reads return these texts, one each, and then a result.
struct System {
    std::vector<std::string> texts;
    int afterwards = -2;
    std::vector<int> rooms;  ///< what each read was asked for
    std::vector<int> ways;

    int operator()(char* buffer, int room, int flags) {
        rooms.push_back(room);
        ways.push_back(flags);
        if (texts.empty()) {
            return afterwards;
        }
        const std::string text = texts.front().substr(0, static_cast<std::size_t>(room));
        texts.erase(texts.begin());
        text.copy(buffer, text.size());
        return static_cast<int>(text.size());
    }
};

class ReadAheadTest : public testing::Test {
protected:
    std::string Take(int length, int flags = 0, bool stay = false) {
        std::string buffer(static_cast<std::size_t>(length), '?');
        result = readAhead.Take(buffer.data(), length, flags, stay,
                                [this](char* into, int room, int way) { return system(into, room, way); });
        return buffer.substr(0, static_cast<std::size_t>(std::max(result, 0)));
    }

    System system;
    ReadAhead readAhead;
    int result = 0;
};

TEST_F(ReadAheadTest, HandsOutOneReadInPieces) {
    system.texts = {"abcdefg"};
    EXPECT_EQ(Take(3), "abc");
    EXPECT_EQ(Take(3), "def");
    EXPECT_EQ(Take(3), "g");
    EXPECT_EQ(system.rooms.size(), 1U);
}

TEST_F(ReadAheadTest, ReadsAgainOnlyWhenAllIsHandedOut) {
    system.texts = {"ab", "cd"};
    EXPECT_EQ(Take(5), "ab");
    EXPECT_EQ(Take(5), "cd");
    EXPECT_EQ(system.rooms.size(), 2U);
}

TEST_F(ReadAheadTest, ReturnsTheResultOfTheSystemWhenThereIsNothing) {
    for (const int said : {0, -1, -2}) {
        system.afterwards = said;
        Take(5);
        EXPECT_EQ(result, said);
    }
}

TEST_F(ReadAheadTest, KnowsOfBytesLeftUntilTheyAreReported) {
    system.texts = {"abc"};
    EXPECT_FALSE(readAhead.HasUnreported());
    Take(1);
    EXPECT_TRUE(readAhead.HasUnreported());
    readAhead.MarkReported(false);
    EXPECT_FALSE(readAhead.HasUnreported());
    Take(1);
    EXPECT_TRUE(readAhead.HasUnreported());
    Take(1);
    EXPECT_FALSE(readAhead.HasUnreported());
}

TEST_F(ReadAheadTest, RemembersThatTheSystemHasMoreUntilItIsRead) {
    system.texts = {"ab", "c"};
    Take(1);
    readAhead.MarkReported(true);
    Take(1);
    EXPECT_TRUE(readAhead.HasUnreported());
    readAhead.MarkReported(false);
    EXPECT_EQ(Take(1), "c");
    EXPECT_FALSE(readAhead.HasUnreported());
}

TEST_F(ReadAheadTest, LeavesPeekedBytesInPlace) {
    system.texts = {"abc"};
    Take(1);
    EXPECT_EQ(Take(2, 2, true), "bc");
    EXPECT_EQ(Take(2), "bc");
    EXPECT_EQ(system.rooms.size(), 1U);
}

TEST_F(ReadAheadTest, LeavesReadsWithFlagsToTheSystem) {
    system.texts = {"abc", "def"};
    EXPECT_EQ(Take(2, 7), "ab");
    EXPECT_EQ(system.rooms, std::vector{2});
    EXPECT_EQ(system.ways, std::vector{7});
    EXPECT_EQ(Take(3), "def");
}

TEST_F(ReadAheadTest, HandsOutWhatItHasBeforeAReadWithFlags) {
    system.texts = {"abc", "def"};
    Take(1);
    EXPECT_EQ(Take(9, 7), "bc");
    EXPECT_EQ(Take(9, 7), "def");
}

TEST_F(ReadAheadTest, ForgetsWhatIsCleared) {
    system.texts = {"abc", "def"};
    Take(1);
    readAhead.MarkReported(true);
    readAhead.Clear();
    EXPECT_FALSE(readAhead.HasUnreported());
    EXPECT_EQ(Take(3), "def");
}

}  // namespace
}  // namespace Morquil
