#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "morquil.hpp"

namespace Morquil::Command {

/// Keeps members in the order in which they are written.
using Json = nlohmann::ordered_json;

/// The kind of value that a property has.
enum class Kind {
    Nothing,  // a command without a value
    Number,
    Bits,  // a number written in hexadecimal
    Decimal,
    YesNo,
    Word,  // one of an enumeration's words
    Text,
    Timecode,  // HH:MM:SS:FF; the number has two decimal digits in each byte
    Address,   // four numbers and points; the number has the first in its top byte
};

/// Words, whole numbers, timecodes and addresses are stored as numbers. A command without a value has an empty text.
using Value = std::variant<std::int64_t, double, bool, std::string>;

struct NamedValue {
    std::string_view word;
    std::int64_t value;
};

/// What a property can hold on any device.
struct ValueType {
    Kind kind = Kind::Nothing;
    std::string noun = {};  // what one value is called: "video mode"
    std::int64_t smallest = 0;
    std::int64_t largest = 0;
    std::span<const NamedValue> words = {};
    std::size_t mostBytes = 0;  // for texts; 0 means no limit
};

/// The words of an enumeration.
template <class Enumeration>
inline constexpr auto namedValues = [] {
    std::array<NamedValue, std::size(morquil::Words<Enumeration>::all)> values{};
    for (std::size_t at = 0; at < values.size(); ++at) {
        const auto& word = morquil::Words<Enumeration>::all[at];
        values[at] = {word.text, static_cast<std::int64_t>(word.value)};
    }
    return values;
}();

/// Parses `text` as a value of `type`.
/// Throws: UsageFailure, which says what is wrong and what would be accepted.
Value ParseValue(const ValueType& type, std::string_view text);

/// The value as people write it. `ParseValue` reads it back. Not escaped.
std::string FormatValue(const ValueType& type, const Value& value);

/// Numbers, booleans and texts become JSON values; everything else is formatted by `FormatValue`.
Json ToJson(const ValueType& type, const Value& value);

/// Whether `reported` confirms `wanted`. Decimals are sent with six decimal places.
bool IsSame(const Value& wanted, const Value& reported);

/// Whether two texts differ only in the case of ASCII letters. Devices and the library's copies may keep the old
/// spelling.
bool IsSameButForCase(const Value& wanted, const Value& reported);

/// The name of the kind: "number", "word".
std::string_view NameOf(Kind kind);

}  // namespace Morquil::Command
