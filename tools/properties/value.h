// Values of properties: their kinds, their text, and how they compare.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Morquil::Properties {

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

/// What a number counts. The protocol gives most levels no unit.
enum class Unit {
    None,
    LineNumber,  // not an amount: which line of the frame
    Lines,
    Pixels,
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
    Unit unit = Unit::None;
    std::string noun = {};              // what one value is called: "video mode"
    std::string_view enumeration = {};  // of a word: the enumeration of the interfaces, "_MorquilAPIVideoMode"
    std::int64_t smallest = 0;
    std::int64_t largest = 0;
    std::span<const NamedValue> words = {};
    std::size_t mostBytes = 0;  // for texts; 0 means no limit
};

/// Why a value is not accepted.
struct Refusal {
    enum class Reason {
        ReadOnly,    // the property cannot be set
        Malformed,   // not a value of the property's kind
        OutOfRange,  // a number or a text outside its limits
        NotOffered,  // a word that the device does not accept now, or a property that it does not have
    };

    Reason reason;
    std::string text;                 // for people: "99 is outside -60 to 60"
    std::vector<Value> nearest = {};  // accepted values like the one that was given, the nearest first

    bool operator==(const Refusal& other) const = default;
};

/// A value, or why the given one is not accepted.
using Checked = std::variant<Value, Refusal>;

/// Parses `text` as a value of `type`.
Checked ParseValue(const ValueType& type, std::string_view text);

/// The value as people write it, without its unit. `ParseValue` reads it back. Not escaped.
std::string FormatValue(const ValueType& type, const Value& value);

/// How far a device's report confirms a value that was set.
enum class Confirmation {
    No,
    /// Confirmed, unless a later report says otherwise: the text differs in case only, and devices may keep the old
    /// spelling; or it is empty, which a device may leave out of its report.
    Likely,
    Yes,
};
/// `reported`: nothing if the device has not reported a value. Decimals are sent with six decimal places.
Confirmation Confirms(const std::optional<Value>& reported, const Value& wanted);

/// The name of a kind: "number", "word".
std::string_view NameOf(Kind kind);
/// The name of a unit: "lines", "pixels"; empty for none.
std::string_view NameOf(Unit unit);

}  // namespace Morquil::Properties
