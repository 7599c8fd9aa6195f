// Cuts UTF-8 text between characters.
#pragma once

#include <cstddef>
#include <string_view>

namespace Morquil {

/// The bytes that the character at the start of `text` has, or 1 when no well-formed character starts there.
/// `text` must not be empty.
constexpr std::size_t Utf8CharacterLength(std::string_view text) {
    const auto byte = [text](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
    const auto lead = byte(0);
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) {
        return 1;
    }
    // The second byte also rules out overlong forms, surrogates and what lies beyond U+10FFFF.
    const auto lowest = lead == 0xE0 ? 0xA0U : lead == 0xF0 ? 0x90U : 0x80U;
    const auto highest = lead == 0xED ? 0x9FU : lead == 0xF4 ? 0x8FU : 0xBFU;
    if (byte(1) < lowest || byte(1) > highest) {
        return 1;
    }
    for (std::size_t at = 2; at < length; ++at) {
        if (byte(at) < 0x80 || byte(at) > 0xBF) {
            return 1;
        }
    }
    return length;
}

/// The length of the longest prefix of `text` with at most `limit` bytes that splits no character. A byte that belongs
/// to no well-formed character counts as a character of its own.
constexpr std::size_t Utf8Prefix(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) {
        return text.size();
    }
    // No character is longer than four bytes, so one that the limit splits starts at most three before it.
    for (std::size_t back = 1; back <= 3 && back <= limit; ++back) {
        if (Utf8CharacterLength(text.substr(limit - back)) > back) {
            return limit - back;
        }
    }
    return limit;
}

}  // namespace Morquil
