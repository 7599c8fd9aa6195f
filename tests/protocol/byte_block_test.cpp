#include "protocol/byte_block.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "protocol/byte_block_word.h"
#include "protocol/byte_words.h"

namespace Morquil {
namespace {

template <class Block>
class ByteBlockTest : public testing::Test {};

using Blocks = testing::Types<ByteBlock, WordBlock>;
TYPED_TEST_SUITE(ByteBlockTest, Blocks);

/// The places of all marks, one after the other.
template <class Block>
std::string Places(typename Block::Marks marks) {
    std::string places;
    std::size_t passed = 0;
    while (marks != 0) {
        const std::size_t first = Block::First(marks);
        places += std::to_string(passed + first) + ' ';
        passed += first + 1;
        marks = first + 1 < Block::size ? Block::WithoutFirst(marks, first + 1) : typename Block::Marks{0};
    }
    return places;
}

std::string Filled(std::size_t size) {
    return std::string(size, 'x');
}

TYPED_TEST(ByteBlockTest, MarksEveryByteBelowALimitAndNoOther) {
    std::string bytes = Filled(TypeParam::size);
    for (int byte = 0; byte < 256; ++byte) {
        bytes[3] = static_cast<char>(byte);
        for (const char limit : {'\x01', ' ', '!', 'x'}) {
            EXPECT_EQ(Places<TypeParam>(TypeParam(bytes.data()).Below(limit)), byte < limit ? "3 " : "") << byte;
        }
    }
}

TYPED_TEST(ByteBlockTest, MarksEveryByteThatEqualsAndNoOther) {
    std::string bytes = Filled(TypeParam::size);
    for (int byte = 0; byte < 256; ++byte) {
        bytes[5] = static_cast<char>(byte);
        EXPECT_EQ(Places<TypeParam>(TypeParam(bytes.data()).Equal(':')), byte == ':' ? "5 " : "") << byte;
    }
}

TYPED_TEST(ByteBlockTest, IsNotMisledByTheByteInFront) {
    std::string bytes = Filled(TypeParam::size);
    bytes[1] = '\n';
    bytes[2] = ' ';  // one above the limit, behind one below it
    bytes[6] = '\0';
    bytes[7] = ' ';
    EXPECT_EQ(Places<TypeParam>(TypeParam(bytes.data()).Below(' ')), "1 6 ");
}

TYPED_TEST(ByteBlockTest, TellsFirstPlacesAndNone) {
    const std::string none = Filled(TypeParam::size);
    EXPECT_GE(TypeParam::First(TypeParam(none.data()).Below(' ')), TypeParam::size);
    for (std::size_t place = 0; place < TypeParam::size; ++place) {
        std::string bytes = none;
        bytes[place] = '\n';
        const auto marks = TypeParam(bytes.data()).Below(' ');
        EXPECT_EQ(TypeParam::First(marks), place);
        EXPECT_EQ(TypeParam::First(TypeParam::WithoutFirst(marks, place)), 0U);
    }
}

TEST(ByteWords, HoldsTheFirstByteLowest) {
    EXPECT_EQ(ByteWords::Load<8>("abcdefgh"), 0x6867666564636261U);
    EXPECT_EQ(ByteWords::Load<4>("abcd"), 0x64636261U);
    static_assert(ByteWords::Load<8>("abcdefgh") == 0x6867666564636261U);
}

TEST(ByteWords, TellsShortTextsOfOneLengthApart) {
    for (std::size_t size = 1; size < 8; ++size) {
        const std::string text(size, 'a');
        for (std::size_t place = 0; place < size; ++place) {
            std::string other = text;
            other[place] = 'b';
            EXPECT_NE(ByteWords::LoadShort(text.data(), size), ByteWords::LoadShort(other.data(), size)) << other;
        }
    }
}

}  // namespace
}  // namespace Morquil
