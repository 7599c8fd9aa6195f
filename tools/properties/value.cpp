#include "properties/value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "properties/lower_case.h"
#include "properties/suggestion.h"

namespace Morquil::Properties {
namespace {

constexpr int decimals = 6;
constexpr std::size_t timecodeLength = 11;

std::string Quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

Refusal Malformed(std::string text, std::vector<Value> nearest = {}) {
    return {Refusal::Reason::Malformed, std::move(text), std::move(nearest)};
}

// "an SDI mode", "a video mode": for acronyms, the name of the first letter decides.
std::string WithArticle(const std::string& noun) {
    const bool isAcronym = noun.size() > 1 && noun[1] >= 'A' && noun[1] <= 'Z';
    const std::string_view vowels = isAcronym ? "AEFHILMNORSX" : "aeiouAEIOU";
    return (vowels.find(noun.front()) != std::string_view::npos ? "an " : "a ") + noun;
}

// The words to choose from, unless there are too many for one line.
std::string Choice(const std::vector<std::string_view>& words) {
    constexpr std::size_t most = 8;
    std::string choice;
    for (std::size_t at = 0; at < std::min(words.size(), most); ++at) {
        choice += (at == 0 ? "there are " : ", ") + std::string(words[at]);
    }
    return words.size() > most ? choice + " and others" : choice;
}

std::optional<std::int64_t> ReadWhole(std::string_view text, int base) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    const bool good = error == std::errc() && end == text.data() + text.size();
    return good ? std::optional(value) : std::nullopt;
}

std::string Spanned(const ValueType& type) {
    return std::to_string(type.smallest) + " to " + std::to_string(type.largest);
}

Checked ParseNumber(const ValueType& type, std::string_view text) {
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::optional<std::int64_t> value = isHexadecimal ? ReadWhole(text.substr(2), 16) : ReadWhole(text, 10);
    if (!value) {
        return Malformed(Quoted(text) + " is not a whole number");
    }
    if (*value < type.smallest || *value > type.largest) {
        return Refusal{Refusal::Reason::OutOfRange,
                       std::string(text) + " is outside " + Spanned(type),
                       {std::clamp(*value, type.smallest, type.largest)}};
    }
    return Value(*value);
}

Checked ParseDecimal(std::string_view text) {
    const std::string_view digits = text.starts_with('+') ? text.substr(1) : text;
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(value)) {
        return Malformed(Quoted(text) + " is not a number such as 1.25");
    }
    return Value(value);
}

Checked ParseYesNo(std::string_view text) {
    for (const std::string_view yes : {"true", "yes", "on", "1"}) {
        if (IsSameButForCase(text, yes)) {
            return Value(true);
        }
    }
    for (const std::string_view no : {"false", "no", "off", "0"}) {
        if (IsSameButForCase(text, no)) {
            return Value(false);
        }
    }
    return Malformed(Quoted(text) + " is neither true nor false");
}

Checked ParseWord(const ValueType& type, std::string_view text) {
    std::vector<std::string_view> words;
    for (const NamedValue& named : type.words) {
        if (IsSameButForCase(named.word, text)) {
            return Value(named.value);
        }
        words.push_back(named.word);
    }
    const std::string refusal = Quoted(text) + " is not " + WithArticle(type.noun) + "; ";
    const auto nearest = std::find(words.begin(), words.end(), Nearest(text, words));
    if (nearest == words.end()) {
        return Malformed(refusal + Choice(words));
    }
    const auto at = static_cast<std::size_t>(nearest - words.begin());
    return Malformed(refusal + "nearest: " + std::string(*nearest), {type.words[at].value});
}

Checked ParseText(const ValueType& type, std::string_view text) {
    if (text.find_first_of(std::string_view("\n\r\0", 3)) != std::string_view::npos) {
        return Malformed("a text has neither line ends nor zero characters in it");
    }
    if (type.mostBytes != 0 && text.size() > type.mostBytes) {
        return Refusal{Refusal::Reason::OutOfRange, "the text has " + std::to_string(text.size()) +
                                                        " bytes, and at most " + std::to_string(type.mostBytes) +
                                                        " are kept"};
    }
    return Value(std::string(text));
}

// Two digits in each of four places, with any separator between them.
Checked ParseTimecode(std::string_view text) {
    constexpr std::array<int, 4> beyond = {24, 60, 60, 60};
    const auto digit = [&](std::size_t at) { return text[at] - '0'; };
    std::int64_t packed = 0;
    bool good = text.size() == timecodeLength;
    for (std::size_t place = 0; good && place < beyond.size(); ++place) {
        const std::size_t at = 3 * place;
        good = digit(at) >= 0 && digit(at) <= 9 && digit(at + 1) >= 0 && digit(at + 1) <= 9 &&
               10 * digit(at) + digit(at + 1) < beyond[place] &&
               (place == 0 || std::string_view(":;.").find(text[at - 1]) != std::string_view::npos);
        packed = packed << 8 | digit(at) << 4 | digit(at + 1);
    }
    if (!good) {
        return Malformed(Quoted(text) + " is not a timecode such as 01:02:03:04");
    }
    return Value(packed);
}

Checked ParseAddress(std::string_view text) {
    std::int64_t packed = 0;
    std::string_view rest = text;
    for (int place = 0; place < 4; ++place) {
        const std::size_t end = place < 3 ? rest.find('.') : rest.size();  // without a point: beyond any number
        const std::optional<std::int64_t> byte = end > 3 ? std::nullopt : ReadWhole(rest.substr(0, end), 10);
        if (!byte || *byte < 0 || *byte > 255) {
            return Malformed(Quoted(text) + " is not an address such as 192.168.1.10");
        }
        packed = packed << 8 | *byte;
        rest.remove_prefix(place < 3 ? end + 1 : end);
    }
    return Value(packed);
}

unsigned ByteOf(std::int64_t packed, int place) {
    return static_cast<unsigned>(packed >> (24 - 8 * place)) & 0xffU;
}

std::string FormatTimecode(std::int64_t packed) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%02x:%02x:%02x:%02x", ByteOf(packed, 0), ByteOf(packed, 1),
                  ByteOf(packed, 2), ByteOf(packed, 3));
    return text.data();
}

std::string FormatAddress(std::int64_t packed) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%u.%u.%u.%u", ByteOf(packed, 0), ByteOf(packed, 1), ByteOf(packed, 2),
                  ByteOf(packed, 3));
    return text.data();
}

std::string FormatBits(std::int64_t bits) {
    std::array<char, 16> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), bits, 16);
    return "0x" + std::string(digits.data(), end);
}

// Without trailing zeros, except one after the point, and independent of the locale.
std::string FormatDecimal(double value) {
    std::array<char, 400> digits{};
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals);
    std::string text(digits.data(), end);
    const std::size_t last = text.find_last_not_of('0');
    text.erase(text[last] == '.' ? last + 2 : last + 1);
    return text;
}

std::string FormatWord(const ValueType& type, std::int64_t value) {
    const auto found = std::find_if(type.words.begin(), type.words.end(),
                                    [value](const NamedValue& named) { return named.value == value; });
    return found != type.words.end() ? std::string(found->word) : std::to_string(value);
}

// The protocol rounds to the last decimal, so the difference is at most half of one.
bool IsSame(double wanted, double reported) {
    return std::abs(wanted - reported) <= 0.51 * std::pow(10, -decimals);
}

}  // namespace

Checked ParseValue(const ValueType& type, std::string_view text) {
    switch (type.kind) {
        case Kind::Number:
        case Kind::Bits:
            return ParseNumber(type, text);
        case Kind::Decimal:
            return ParseDecimal(text);
        case Kind::YesNo:
            return ParseYesNo(text);
        case Kind::Word:
            return ParseWord(type, text);
        case Kind::Text:
            return ParseText(type, text);
        case Kind::Timecode:
            return ParseTimecode(text);
        case Kind::Address:
            return ParseAddress(text);
        case Kind::Nothing:
            break;
    }
    return Value(std::string());
}

std::string FormatValue(const ValueType& type, const Value& value) {
    if (const double* const decimal = std::get_if<double>(&value)) {
        return FormatDecimal(*decimal);
    }
    if (const bool* const truth = std::get_if<bool>(&value)) {
        return *truth ? "true" : "false";
    }
    if (const std::string* const text = std::get_if<std::string>(&value)) {
        return *text;
    }
    const std::int64_t number = std::get<std::int64_t>(value);
    switch (type.kind) {
        case Kind::Word:
            return FormatWord(type, number);
        case Kind::Bits:
            return FormatBits(number);
        case Kind::Timecode:
            return FormatTimecode(number);
        case Kind::Address:
            return FormatAddress(number);
        default:
            return std::to_string(number);
    }
}

Confirmation Confirms(const std::optional<Value>& reported, const Value& wanted) {
    const std::string* const text = std::get_if<std::string>(&wanted);
    if (!reported) {
        return text != nullptr && text->empty() ? Confirmation::Likely : Confirmation::No;
    }
    const double* const decimal = std::get_if<double>(&wanted);
    const double* const reportedDecimal = std::get_if<double>(&*reported);
    const bool areDecimals = decimal != nullptr && reportedDecimal != nullptr;
    if (areDecimals ? IsSame(*decimal, *reportedDecimal) : wanted == *reported) {
        return Confirmation::Yes;
    }
    const std::string* const reportedText = std::get_if<std::string>(&*reported);
    const bool isSimilar = text != nullptr && reportedText != nullptr && IsSameButForCase(*text, *reportedText);
    return isSimilar ? Confirmation::Likely : Confirmation::No;
}

std::string_view NameOf(Kind kind) {
    // clang-format off
    switch (kind) {
        case Kind::Nothing:  return "none";
        case Kind::Number:   return "number";
        case Kind::Bits:     return "bits";
        case Kind::Decimal:  return "decimal";
        case Kind::YesNo:    return "yes/no";
        case Kind::Word:     return "word";
        case Kind::Text:     return "text";
        case Kind::Timecode: return "timecode";
        case Kind::Address:  return "address";
    }
    // clang-format on
    return {};
}

std::string_view NameOf(Unit unit) {
    // clang-format off
    switch (unit) {
        case Unit::None:       return "";
        case Unit::LineNumber: return "line number";
        case Unit::Lines:      return "lines";
        case Unit::Pixels:     return "pixels";
    }
    // clang-format on
    return {};
}

}  // namespace Morquil::Properties
