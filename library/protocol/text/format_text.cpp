#include "protocol/text/format_text.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>

namespace Morquil {

namespace {

constexpr std::size_t longestInteger = 11;
/// The largest double has 309 digits before its point; a sign, the point and six decimals come on top.
constexpr std::size_t longestDecimal = 317;

/// Counts everything that is appended and keeps what fits.
class TextBuffer {
public:
    TextBuffer(char* text, std::size_t capacity)
        : text_(text), capacity_(capacity), room_(capacity > 0 ? capacity - 1 : 0) {}

    void Append(char character) {
        if (length_ < room_) {
            text_[length_] = character;
        }
        ++length_;
    }

    void Append(const char* piece, std::size_t size) {
        if (length_ < room_) {
            std::memcpy(text_ + length_, piece, std::min(size, room_ - length_));
        }
        length_ += size;
    }

    /// Appends a number as std::to_chars writes it with `format`, whatever locale the host has set.
    template <std::size_t longest, class Number, class... Format>
    void AppendNumber(Number number, Format... format) {
        char digits[longest];
        const char* const end = std::to_chars(digits, digits + longest, number, format...).ptr;
        Append(digits, static_cast<std::size_t>(end - digits));
    }

    void Terminate() {
        if (capacity_ > 0) {
            text_[std::min(length_, room_)] = '\0';
        }
    }

    /// Negative when the count does not fit into an int.
    int Length() const { return length_ <= INT_MAX ? static_cast<int>(length_) : -1; }

private:
    char* text_;
    std::size_t capacity_;
    std::size_t room_;  // excluding the terminator
    std::size_t length_ = 0;
};

void AppendWord(TextBuffer& text, const char* word) {
    const char* const known = word != nullptr ? word : "(null)";
    text.Append(known, std::strlen(known));
}

}  // namespace

int FormatText(char* buffer, std::size_t capacity, const char* format, std::va_list arguments) {
    TextBuffer text(buffer, capacity);
    for (; *format != '\0'; ++format) {
        if (*format != '%') {
            text.Append(*format);
            continue;
        }
        ++format;
        switch (*format) {
            case 's':
                AppendWord(text, va_arg(arguments, const char*));
                break;
            case 'd':
                text.AppendNumber<longestInteger>(va_arg(arguments, int));
                break;
            case 'u':
                text.AppendNumber<longestInteger>(va_arg(arguments, unsigned));
                break;
            case 'x':
                text.AppendNumber<longestInteger>(va_arg(arguments, unsigned), 16);
                break;
            case 'f':
                text.AppendNumber<longestDecimal>(va_arg(arguments, double), std::chars_format::fixed, 6);
                break;
            case '%':
                text.Append('%');
                break;
            default:
                text.Append('%');
                --format;
        }
    }
    text.Terminate();
    return text.Length();
}

}  // namespace Morquil
