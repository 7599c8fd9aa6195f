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

/// Keeps the order in which members are written.
using Json = nlohmann::ordered_json;

/// How the values of a property look.
enum class Kind {
    Nothing,  // a command without a value
    Number,
    Bits,  // a number that is written in hexadecimal
    Decimal,
    YesNo,
    Word,  // one of an enumeration
    Text,
    Timecode,  // HH:MM:SS:FF; the number has two decimal digits in each byte
    Address,   // four numbers and points; the number has the first in its top byte
};

/// Words, whole numbers, timecodes and addresses are numbers; a command without a value has an empty text.
using Value = std::variant<std::int64_t, double, bool, std::string>;

struct NamedValue {
    std::string_view word;
    std::int64_t value;
};

/// What a property can hold at all, whatever device it is of.
struct ValueType {
    Kind kind = Kind::Nothing;
    std::string noun = {};  // what one value is called: "video mode"
    std::int64_t smallest = 0;
    std::int64_t largest = 0;
    std::span<const NamedValue> words = {};
    std::size_t mostBytes = 0;  // of a text; 0: any number
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

/// The value that `text` means.
/// Throws: UsageFailure, which says what it is not, and what would be right.
Value ParseValue(const ValueType& type, std::string_view text);

/// As people write it; reads back with `ParseValue`. Not escaped.
std::string FormatValue(const ValueType& type, const Value& value);

/// Numbers, truths and texts as JSON knows them; everything else as `FormatValue` has it.
Json ToJson(const ValueType& type, const Value& value);

/// Whether a device that reports `reported` has been given `wanted`: decimals travel with six decimals.
bool IsSame(const Value& wanted, const Value& reported);

/// Whether two texts differ in the case of ASCII letters alone. Devices and the library's copies may keep the old one.
bool IsSameButForCase(const Value& wanted, const Value& reported);

/// The name of the kind: "number", "word".
std::string_view NameOf(Kind kind);

}  // namespace Morquil::Command
