// Values of properties as people write them, and back.
#pragma once

#include <cstdint>
#include <cstdio>
#include <iterator>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>

#include "morquil/property_info.hpp"

namespace morquil::detail {

[[noreturn]] inline void Refuse(const PropertyInfo& info, const std::string& reason) {
    throw InvalidArgument(std::string(info.name), E_INVALIDARG, reason);
}

inline std::string Quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline bool IsSameButForCase(std::string_view one, std::string_view other) {
    bool same = one.size() == other.size();
    for (std::size_t at = 0; same && at < one.size(); ++at) {
        same = Lower(one[at]) == Lower(other[at]);
    }
    return same;
}

/// Digits after the point, at least one and at most six; the same in every locale.
inline std::string DecimalText(double value) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(6);
    stream << std::fixed << value;
    std::string text = stream.str();
    const std::size_t last = text.find_last_not_of('0');
    text.erase(text[last] == '.' ? last + 2 : last + 1);
    return text;
}

/// The four bytes of a number, the top one first.
inline std::string BytesText(std::int64_t packed, int base, char separator) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        char digits[4];
        std::snprintf(digits, sizeof digits, base == 16 ? "%02x" : "%u",
                      static_cast<unsigned>(packed >> shift) & 0xFFU);
        text += digits;
        text.append(shift == 0 ? 0 : 1, separator);
    }
    return text;
}

inline std::string NumberText(const PropertyRow& row, std::int64_t number) {
    char digits[20];
    switch (row.info.kind) {
        case PropertyKind::Word:
            for (const Word<std::int64_t>& word : row.words) {
                if (word.value == number) {
                    return std::string(word.text);
                }
            }
            return std::to_string(number);
        case PropertyKind::Bits:
            std::snprintf(digits, sizeof digits, "0x%llx", static_cast<unsigned long long>(number));
            return digits;
        case PropertyKind::Timecode:
            return BytesText(number, 16, ':');
        case PropertyKind::Address:
            return BytesText(number, 10, '.');
        default:
            return std::to_string(number);
    }
}

inline std::string TextOf(const PropertyRow& row, const Stored& value) {
    if (const auto* const text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* const truth = std::get_if<bool>(&value)) {
        return *truth ? "true" : "false";
    }
    const auto* const decimal = std::get_if<double>(&value);
    return decimal != nullptr ? DecimalText(*decimal) : NumberText(row, std::get<std::int64_t>(value));
}

/// The number in `digits`; nothing if that is more, or less, than digits of `base`, or too large for any property.
inline std::optional<std::int64_t> NumberOf(std::string_view digits, int base) {
    constexpr std::size_t most = 15;  // fewer than 64 bits, also in hexadecimal
    std::int64_t number = 0;
    for (const char c : digits.substr(0, most)) {
        const char lower = Lower(c);
        const int digit = c >= '0' && c <= '9' ? c - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : base;
        if (digit >= base) {
            return std::nullopt;
        }
        number = number * base + digit;
    }
    return digits.empty() || digits.size() > most ? std::nullopt : std::optional(number);
}

inline std::int64_t WithinLimits(const PropertyInfo& info, std::int64_t number) {
    if (number < info.smallest || number > info.largest) {
        Refuse(info, std::to_string(number) + " is outside " + std::to_string(info.smallest) + " to " +
                         std::to_string(info.largest));
    }
    return number;
}

inline std::int64_t ParseNumber(const PropertyInfo& info, std::string_view text) {
    const bool isNegative = !text.empty() && text.front() == '-';
    const std::string_view digits = text.substr(isNegative || (!text.empty() && text.front() == '+') ? 1 : 0);
    const std::string_view prefix = text.substr(0, 2);
    const bool isHexadecimal = prefix == "0x" || prefix == "0X";
    const std::optional<std::int64_t> number = isHexadecimal ? NumberOf(text.substr(2), 16) : NumberOf(digits, 10);
    if (!number) {
        Refuse(info, Quoted(text) + " is not a whole number");
    }
    return WithinLimits(info, isNegative ? -*number : *number);
}

inline double ParseDecimal(const PropertyInfo& info, std::string_view text) {
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    double value = 0;
    if (!(stream >> std::noskipws >> value) || stream.peek() != std::istringstream::traits_type::eof()) {
        Refuse(info, Quoted(text) + " is not a number such as 1.25");
    }
    return value;
}

inline bool ParseYesNo(const PropertyInfo& info, std::string_view text) {
    for (const std::string_view yes : {"true", "yes", "on", "1"}) {
        if (IsSameButForCase(text, yes)) {
            return true;
        }
    }
    for (const std::string_view no : {"false", "no", "off", "0"}) {
        if (IsSameButForCase(text, no)) {
            return false;
        }
    }
    Refuse(info, Quoted(text) + " is neither true nor false");
}

inline std::int64_t ParseWord(const PropertyRow& row, std::string_view text) {
    for (const Word<std::int64_t>& word : row.words) {
        if (IsSameButForCase(word.text, text)) {
            return word.value;
        }
    }
    Refuse(row.info, Quoted(text) + " is not a word of " + std::string(row.info.enumeration));
}

inline std::string ParseText(const PropertyInfo& info, std::string_view text) {
    if (text.find_first_of(std::string_view("\n\r\0", 3)) != std::string_view::npos) {
        Refuse(info, "the text has a line end or a zero character in it");
    }
    if (info.mostBytes != 0 && text.size() > info.mostBytes) {
        Refuse(info, "the text has " + std::to_string(text.size()) + " bytes, and at most " +
                         std::to_string(info.mostBytes) + " are kept");
    }
    return std::string(text);
}

/// Two digits in each of four places, with any separator between them.
inline std::int64_t ParseTimecode(const PropertyInfo& info, std::string_view text) {
    constexpr std::int64_t beyond[] = {24, 60, 60, 60};
    std::int64_t packed = 0;
    bool good = text.size() == 11;
    for (std::size_t place = 0; good && place < std::size(beyond); ++place) {
        const std::string_view digits = text.substr(3 * place, 2);
        const std::optional<std::int64_t> number = NumberOf(digits, 10);
        good = number && *number < beyond[place] &&
               (place == 0 || std::string_view(":;.").find(text[3 * place - 1]) != std::string_view::npos);
        packed = packed << 8 | NumberOf(digits, 16).value_or(0);
    }
    if (!good) {
        Refuse(info, Quoted(text) + " is not a timecode such as 01:02:03:04");
    }
    return packed;
}

/// Throws: InvalidArgument unless `text` is a value of the property.
inline Stored Parse(const PropertyRow& row, std::string_view text) {
    switch (row.info.kind) {
        case PropertyKind::Number:
        case PropertyKind::Bits:
            return ParseNumber(row.info, text);
        case PropertyKind::Decimal:
            return ParseDecimal(row.info, text);
        case PropertyKind::YesNo:
            return ParseYesNo(row.info, text);
        case PropertyKind::Word:
            return ParseWord(row, text);
        case PropertyKind::Text:
            return ParseText(row.info, text);
        case PropertyKind::Timecode:
            return ParseTimecode(row.info, text);
        case PropertyKind::Address:
            Refuse(row.info, "an address can only be read");
        case PropertyKind::Nothing:
            break;
    }
    Refuse(row.info, "a command without a value");
}

}  // namespace morquil::detail
