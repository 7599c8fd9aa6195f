#include "protocol/format_text.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

#include "protocol/number_text.h"

namespace Morquil {

namespace {

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

    /// Appends what `write` writes of a number: at most `longest` characters.
    template <std::size_t longest, class Number>
    void AppendNumber(char* (*write)(char*, Number), Number number) {
        if (length_ + longest <= room_) {
            length_ = static_cast<std::size_t>(write(text_ + length_, number) - text_);
        } else {
            AppendCut<longest>(write, number);
        }
    }

    void Terminate() {
        if (capacity_ > 0) {
            text_[std::min(length_, room_)] = '\0';
        }
    }

    /// Negative when there are more than an int can say.
    int Length() const { return length_ <= INT_MAX ? static_cast<int>(length_) : -1; }

private:
    // Apart from the rest, which needs no memory of its own, and so no guard for it either.
    template <std::size_t longest, class Number>
    [[gnu::noinline]] void AppendCut(char* (*write)(char*, Number), Number number) {
        char piece[longest];
        Append(piece, static_cast<std::size_t>(write(piece, number) - piece));
    }

    char* text_;
    std::size_t capacity_;
    std::size_t room_;  // without the terminator
    std::size_t length_ = 0;
};

void AppendWord(TextBuffer& text, const char* word) {
    const char* const known = word != nullptr ? word : "(null)";
    text.Append(known, std::strlen(known));
}

void AppendDecimal(TextBuffer& text, double number) {
    if (std::abs(number) < shortDecimalLimit) {
        text.AppendNumber<longestShortDecimalText>(WriteDecimal, number);
    } else {
        text.AppendNumber<longestDecimalText>(WriteDecimal, number);
    }
}

}  // namespace

// All arguments are taken here, where they are: a copy of what the caller has only just made ready would have to wait
// for it, which takes as long as all the rest.
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
                text.AppendNumber<longestIntegerText>(WriteSigned, va_arg(arguments, int));
                break;
            case 'u':
                text.AppendNumber<longestIntegerText>(WriteUnsigned, va_arg(arguments, unsigned));
                break;
            case 'x':
                text.AppendNumber<longestIntegerText>(WriteHexadecimal, va_arg(arguments, unsigned));
                break;
            case 'f':
                AppendDecimal(text, va_arg(arguments, double));
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
