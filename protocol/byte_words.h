// Text eight bytes at a time. A word holds a text's first byte lowest, on every machine.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Morquil::ByteWords {

/// One load instruction at run time; takes at most eight bytes.
template <std::size_t bytes>
[[gnu::always_inline]] constexpr std::uint64_t Load(const char* from) {
    if (std::is_constant_evaluated() || std::endian::native == std::endian::big) {
        // GCOVR_EXCL_START: runs in the compiler, and on machines of the other byte order
        std::uint64_t word = 0;
        for (std::size_t at = 0; at < bytes; ++at) {
            word |= static_cast<std::uint64_t>(static_cast<unsigned char>(from[at])) << (8 * at);
        }
        return word;
        // GCOVR_EXCL_STOP
    }
    std::uint64_t word = 0;
    std::memcpy(&word, from, bytes);
    return word;
}

/// All bytes of a text of less than eight. Texts of the same length give the same word only when they are equal.
[[gnu::always_inline]] constexpr std::uint64_t LoadShort(const char* text, std::size_t size) {
    if (size >= 4) {
        return Load<4>(text) | Load<4>(text + size - 4) << 32;
    }
    if (size == 0) {
        return 0;
    }
    return Load<1>(text) | Load<1>(text + size / 2) << 8 | Load<1>(text + size - 1) << 16;
}

/// The same byte eight times.
constexpr std::uint64_t Repeat(char byte) {
    return static_cast<unsigned char>(byte) * 0x0101010101010101U;
}

inline constexpr std::uint64_t topBits = Repeat('\x80');

/// Marks every byte that is below `limit`, which is at most 0x80, by its top bit.
constexpr std::uint64_t MarkBelow(std::uint64_t word, char limit) {
    const std::uint64_t carries = (word & ~topBits) + Repeat(static_cast<char>(0x80 - limit));
    return ~(carries | word) & topBits;
}

/// Marks every byte that equals `byte` in the same way.
constexpr std::uint64_t MarkEqual(std::uint64_t word, char byte) {
    return MarkBelow(word ^ Repeat(byte), 1);
}

/// The place of the first marked byte; 8 when none is.
constexpr std::size_t FirstMarked(std::uint64_t marks) {
    return static_cast<std::size_t>(std::countr_zero(marks)) / 8;
}

}  // namespace Morquil::ByteWords
