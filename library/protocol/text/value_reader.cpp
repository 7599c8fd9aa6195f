#include "protocol/text/value_reader.h"

#include <charconv>
#include <cstddef>
#include <cstring>
#include <limits>
#include <system_error>

#include "protocol/text/ascii.h"

namespace Morquil {

namespace {

std::size_t LengthOfSpace(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && IsSpace(text[length])) {
        ++length;
    }
    return length;
}

std::size_t LengthOfWord(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && !IsSpace(text[length])) {
        ++length;
    }
    return length;
}

void SkipSpace(std::string_view& text) {
    text.remove_prefix(LengthOfSpace(text));
}

/// Consumes "+" or "-" if present. Returns whether it was "-".
bool TakeSign(std::string_view& text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return negative;
}

template <std::size_t size>
bool TakeText(std::string_view& text, const char (&expected)[size]) {
    constexpr std::size_t length = size - 1;
    if (text.size() < length || std::memcmp(text.data(), expected, length) != 0) {
        return false;
    }
    text.remove_prefix(length);
    return true;
}

/// Consumes all digits that follow. Returns false when there are none or their value exceeds `largest`.
bool TakeMagnitude(std::string_view& text, std::uint32_t largest, std::uint32_t& magnitude) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc() && magnitude <= largest;
}

/// The exponent of a number as `TakeDecimal` reads it; 0 when it has none.
double Exponent(std::string_view number) {
    const std::size_t mark = number.find_first_of("eE");
    if (mark == std::string_view::npos) {
        return 0;
    }
    number.remove_prefix(mark + 1);
    const bool negative = TakeSign(number);
    double magnitude = std::numeric_limits<double>::infinity();
    std::from_chars(number.data(), number.data() + number.size(), magnitude);
    return negative ? -magnitude : magnitude;
}

/// Whether a number outside the range of double is too small: its first significant digit comes after the point.
bool IsTooSmall(std::string_view number) {
    const std::size_t point = number.find_first_of(".eE");
    const auto wholeDigits = static_cast<double>(point == std::string_view::npos ? number.size() : point);
    return wholeDigits - static_cast<double>(number.find_first_of("123456789")) + Exponent(number) < 0;
}

/// Consumes a decimal number without a sign, with all the characters that a stream would collect for one: an exponent
/// mark without digits makes the number invalid. A number that is too small reads as 0.
/// Returns: false when there is no number, or when it is too large.
bool TakeDecimal(std::string_view& text, double& value) {
    if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) {
        return false;  // a stream does not read "inf" and "nan" as numbers
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const std::string_view number = text.substr(0, static_cast<std::size_t>(end - text.data()));
    text.remove_prefix(number.size());
    if (!text.empty() && FoldCase(text.front()) == 'e' && number.find_first_of("eE") == std::string_view::npos) {
        return false;
    }
    if (error == std::errc::result_out_of_range && IsTooSmall(number)) {
        value = 0;
        return true;
    }
    return error == std::errc();
}

/// Reads what "%d" reads; keeps the lower 32 bits of a larger number.
bool TakePattern(std::string_view& text, std::uint32_t& pattern) {
    SkipSpace(text);
    const bool negative = TakeSign(text);
    if (text.empty() || !IsDigit(text.front())) {
        return false;
    }
    pattern = 0;
    while (!text.empty() && IsDigit(text.front())) {
        pattern = pattern * 10 + static_cast<std::uint32_t>(text.front() - '0');
        text.remove_prefix(1);
    }
    pattern = negative ? 0 - pattern : pattern;
    return true;
}

}  // namespace

// Once the rest is empty, every read fails.
bool ValueReader::Fail() {
    rest_ = {};
    return false;
}

bool ValueReader::Read(std::int32_t& value) {
    SkipSpace(rest_);
    const bool negative = TakeSign(rest_);
    std::uint32_t magnitude = 0;
    if (!TakeMagnitude(rest_, negative ? 0x80000000U : 0x7FFFFFFFU, magnitude)) {
        return Fail();
    }
    value = static_cast<std::int32_t>(negative ? 0 - magnitude : magnitude);
    return true;
}

bool ValueReader::Read(std::uint32_t& value) {
    SkipSpace(rest_);
    const bool negative = TakeSign(rest_);
    std::uint32_t magnitude = 0;
    if (!TakeMagnitude(rest_, UINT32_MAX, magnitude)) {
        return Fail();
    }
    value = negative ? 0 - magnitude : magnitude;
    return true;
}

bool ValueReader::Read(double& value) {
    SkipSpace(rest_);
    const bool negative = TakeSign(rest_);
    double magnitude = 0;
    if (!TakeDecimal(rest_, magnitude)) {
        return Fail();
    }
    value = negative ? -magnitude : magnitude;
    return true;
}

bool ValueReader::Read(bool& value) {
    SkipSpace(rest_);
    const bool isTrue = TakeText(rest_, "true");
    if (!isTrue && !TakeText(rest_, "false")) {
        return Fail();
    }
    value = isTrue;
    return true;
}

bool ValueReader::ReadWord(std::string_view& word) {
    SkipSpace(rest_);
    if (rest_.empty()) {
        return Fail();
    }
    word = {rest_.data(), LengthOfWord(rest_)};
    rest_.remove_prefix(word.size());
    return true;
}

bool ParseTimecode(std::string_view text, std::uint32_t& bcd) {
    constexpr std::size_t length = 11;
    if (text.size() < length) {
        return false;
    }
    std::uint32_t digits = 0;
    for (std::size_t at = 0; at < length; ++at) {
        if (at % 3 == 2) {
            continue;  // any separator
        }
        if (!IsDigit(text[at])) {
            return false;
        }
        digits = digits << 4 | static_cast<std::uint32_t>(text[at] - '0');
    }
    bcd = digits;
    return true;
}

bool ParseVersionPair(std::string_view text, std::uint32_t& first, std::uint32_t& second) {
    std::uint32_t numbers[2] = {};
    if (!TakePattern(text, numbers[0]) || !TakeText(text, ".") || !TakePattern(text, numbers[1])) {
        return false;
    }
    first = numbers[0];
    second = numbers[1];
    return true;
}

std::uint32_t ParseHexVersion(std::string_view text) {
    if (!TakeText(text, "0x")) {
        return 0;
    }
    SkipSpace(text);
    const bool negative = TakeSign(text);
    if (!TakeText(text, "0x")) {
        TakeText(text, "0X");  // the number itself may repeat the prefix
    }
    std::uint32_t magnitude = 0;
    std::from_chars(text.data(), text.data() + text.size(), magnitude, 16);  // leaves 0 where there is no number
    return negative ? 0 - magnitude : magnitude;
}

}  // namespace Morquil
