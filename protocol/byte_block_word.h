#pragma once

#include <cstddef>
#include <cstdint>

#include "protocol/byte_words.h"

namespace Morquil {

/// Eight bytes, for any processor.
class WordBlock {
public:
    using Marks = std::uint64_t;  // the top bit of each byte

    static constexpr std::size_t size = 8;

    explicit WordBlock(const char* from) : bytes_(ByteWords::Load<size>(from)) {}

    Marks Below(char limit) const { return ByteWords::MarkBelow(bytes_, limit); }
    Marks Equal(char byte) const { return ByteWords::MarkEqual(bytes_, byte); }

    static std::size_t First(Marks marks) { return ByteWords::FirstMarked(marks); }
    static Marks WithoutFirst(Marks marks, std::size_t count) { return marks >> 8 * count; }

private:
    std::uint64_t bytes_;
};

}  // namespace Morquil
