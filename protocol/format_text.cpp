#include "protocol/format_text.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>
#include <string_view>

namespace Morquil {

namespace {

/// Counts everything that is appended and keeps what fits.
class TextBuffer {
public:
    TextBuffer(char* text, std::size_t capacity) : text_(text), room_(capacity > 0 ? capacity - 1 : 0) {}

    void Append(std::string_view piece) {
        if (length_ < room_) {
            std::memcpy(text_ + length_, piece.data(), std::min(piece.size(), room_ - length_));
        }
        length_ += piece.size();
    }

    template <class Number, class... Form>
    void AppendNumber(Number number, Form... form) {
        char digits[320];  // the largest double has 309 digits before its point
        const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number, form...);
        Append({digits, static_cast<std::size_t>(end - digits)});
    }

    std::size_t Length() const { return length_; }
    std::size_t KeptLength() const { return std::min(length_, room_); }

private:
    char* text_;
    std::size_t room_;
    std::size_t length_ = 0;
};

/// A copy of the arguments that can be handed on while it is being read.
class Arguments {
public:
    explicit Arguments(std::va_list list) { va_copy(list_, list); }
    ~Arguments() { va_end(list_); }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    template <class T>
    T Next() {
        return va_arg(list_, T);
    }

private:
    std::va_list list_;
};

/// Returns false, and takes no argument, for a conversion that is not known.
bool AppendConversion(TextBuffer& text, char conversion, Arguments& arguments) {
    switch (conversion) {
        case 's': {
            const char* const argument = arguments.Next<const char*>();
            text.Append(argument != nullptr ? argument : "(null)");
            return true;
        }
        case 'd':
            text.AppendNumber(arguments.Next<int>());
            return true;
        case 'u':
            text.AppendNumber(arguments.Next<unsigned>());
            return true;
        case 'x':
            text.AppendNumber(arguments.Next<unsigned>(), 16);
            return true;
        case 'f':
            text.AppendNumber(arguments.Next<double>(), std::chars_format::fixed, 6);
            return true;
        case '%':
            text.Append("%");
            return true;
        default:
            return false;
    }
}

void AppendFormatted(TextBuffer& text, std::string_view format, Arguments& arguments) {
    while (!format.empty()) {
        const std::size_t plain = std::min(format.find('%'), format.size());
        text.Append(format.substr(0, plain));
        format.remove_prefix(plain);
        if (format.size() > 1 && AppendConversion(text, format[1], arguments)) {
            format.remove_prefix(2);
        } else if (!format.empty()) {
            text.Append("%");
            format.remove_prefix(1);
        }
    }
}

}  // namespace

int FormatText(char* buffer, std::size_t capacity, const char* format, std::va_list arguments) {
    TextBuffer text(buffer, capacity);
    Arguments copy(arguments);
    AppendFormatted(text, format, copy);
    if (capacity > 0) {
        buffer[text.KeptLength()] = '\0';
    }
    return text.Length() <= INT_MAX ? static_cast<int>(text.Length()) : -1;
}

}  // namespace Morquil
