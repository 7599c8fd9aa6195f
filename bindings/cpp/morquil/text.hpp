// UTF-8 outside, UTF-16 in BSTRs across the interfaces.
#pragma once

#include <cstdint>
#include <new>
#include <string>
#include <string_view>

#include "MorquilAPI.h"

namespace morquil::detail {

inline constexpr char32_t replacement = 0xFFFD;

/// Removes the first code point of `text`, which must not be empty, and returns it. Invalid UTF-8 becomes U+FFFD, one
/// byte at a time.
inline char32_t TakeCodePoint(std::string_view& text) {
    const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned first = byte(0);
    const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t code = length == 1 ? first : first & (0xFFU >> (length + 1));
    bool good = length != 0 && first < 0xF5 && length <= text.size();
    for (std::size_t index = 1; good && index < length; ++index) {
        good = (byte(index) & 0xC0U) == 0x80;
        code = code << 6 | (byte(index) & 0x3FU);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    good = good && code >= smallest[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    text.remove_prefix(good ? length : 1);
    return good ? code : replacement;
}

inline void AppendUtf8(std::string& text, char32_t code) {
    const auto append = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code < 0x80) {
        append(code);
        return;
    }
    const int following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    append((0xF00U >> (following + 1) & 0xFFU) | code >> 6 * following);
    for (int left = following - 1; left >= 0; --left) {
        append(0x80U | (code >> 6 * left & 0x3FU));
    }
}

inline std::basic_string<OLECHAR> Utf16FromUtf8(std::string_view text) {
    std::basic_string<OLECHAR> units;
    while (!text.empty()) {
        const char32_t code = TakeCodePoint(text);
        if (code < 0x10000) {
            units += static_cast<OLECHAR>(code);
        } else {
            units += static_cast<OLECHAR>(0xD7C0 + (code >> 10));
            units += static_cast<OLECHAR>(0xDC00 + (code & 0x3FF));
        }
    }
    return units;
}

/// An unpaired surrogate becomes U+FFFD.
inline std::string Utf8FromUtf16(std::basic_string_view<OLECHAR> units) {
    std::string text;
    for (std::size_t at = 0; at < units.size(); ++at) {
        const auto unit = static_cast<char32_t>(units[at]);
        const auto next = at + 1 < units.size() ? static_cast<char32_t>(units[at + 1]) : 0;
        if (unit < 0xD800 || unit > 0xDFFF) {
            AppendUtf8(text, unit);
        } else if (unit < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF) {
            AppendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++at;
        } else {
            AppendUtf8(text, replacement);
        }
    }
    return text;
}

/// A text that is passed to the library. Freed with this object.
class TextIn {
public:
    explicit TextIn(std::string_view text) {
        const std::basic_string<OLECHAR> units = Utf16FromUtf8(text);
        text_ = SysAllocStringLen(units.data(), static_cast<UINT>(units.size()));
        if (text_ == nullptr) {
            throw std::bad_alloc();
        }
    }
    TextIn(const TextIn&) = delete;
    TextIn& operator=(const TextIn&) = delete;
    ~TextIn() { SysFreeString(text_); }

    operator BSTR() const { return text_; }  // NOLINT(google-explicit-constructor): stands in for one

private:
    BSTR text_ = nullptr;
};

}  // namespace morquil::detail
