#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Morquil {

/// The wire form of a timecode held as eight BCD digits, hours in the top byte: "HH:MM:SS;FF", zero-terminated.
constexpr std::array<char, 12> TimecodeText(std::uint32_t digits) {
    std::array<char, 12> text{"00:00:00;00"};
    int shift = 28;
    for (const std::size_t position : {0U, 1U, 3U, 4U, 6U, 7U, 9U, 10U}) {
        text[position] = static_cast<char>('0' + ((digits >> shift) & 0xF));
        shift -= 4;
    }
    return text;
}

}  // namespace Morquil
