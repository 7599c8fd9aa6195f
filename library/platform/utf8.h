// UTF-8 character by character.
#pragma once

#include <cstddef>
#include <string_view>

namespace Morquil {

/// The character at the start of a text.
struct Utf8Character {
    char32_t code;     ///< U+FFFD for malformed bytes
    std::size_t size;  ///< its length in bytes, or the number of malformed bytes that one U+FFFD replaces
    bool isWellFormed;
};

/// `text` must not be empty.
constexpr Utf8Character FirstUtf8Character(std::string_view text) {
    constexpr char32_t replacement = 0xFFFD;
    const auto byte = [text](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
    const unsigned lead = byte(0);
    if (lead < 0x80) {
        return {lead, 1, true};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return {replacement, 1, false};
    }
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    // The limits of the second byte also rule out overlong forms, surrogates and codes above U+10FFFF.
    unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t code = lead & (0x7FU >> size);
    for (std::size_t at = 1; at < size; ++at) {
        if (byte(at) < lowest || byte(at) > highest) {
            return {replacement, at, false};
        }
        code = code << 6 | (byte(at) & 0x3FU);
        lowest = 0x80;
        highest = 0xBF;
    }
    return {code, size, true};
}

/// The length of the longest prefix of `text` with at most `limit` bytes that splits no character. A byte that belongs
/// to no well-formed character counts as one character.
constexpr std::size_t Utf8Prefix(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) {
        return text.size();
    }
    // No character is longer than four bytes, so one that the limit splits starts at most three before it.
    for (std::size_t back = 1; back <= 3 && back <= limit; ++back) {
        const Utf8Character character = FirstUtf8Character(text.substr(limit - back));
        if (character.isWellFormed && character.size > back) {
            return limit - back;
        }
    }
    return limit;
}

}  // namespace Morquil
