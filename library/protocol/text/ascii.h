// Characters as the device protocol sees them: ASCII, whatever locale the host has set.
#pragma once

#include <cstddef>
#include <string_view>

namespace Morquil {

/// The lower-case form of an ASCII letter; every other byte, including 0x80 and above, is unchanged.
constexpr char FoldCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// White space of the classic locale: blank, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool IsSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

constexpr bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Compares whole texts; only ASCII letters may differ in case.
constexpr bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) {
        return false;
    }
    if (left == right) {
        return true;  // a device nearly always writes its words in the table's own case
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (FoldCase(left[i]) != FoldCase(right[i])) {
            return false;
        }
    }
    return true;
}

/// The text up to its first zero byte, where a zero-terminated copy would end.
inline std::string_view UpToZero(std::string_view text) {
    const std::size_t zero = text.find('\0');
    return text.substr(0, zero);
}

}  // namespace Morquil
