// What a property is: its name, its kind of value, its limits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "morquil/call.hpp"
#include "morquil/interfaces.hpp"

namespace morquil {

class Device;

/// The kind of value that a property has.
enum class PropertyKind {
    /// None: a command that needs no value.
    Nothing,
    Number,
    /// A number whose text is hexadecimal, such as "0x1f".
    Bits,
    Decimal,
    /// Its text is "true" or "false".
    YesNo,
    /// One of the words of an enumeration.
    Word,
    Text,
    /// "HH:MM:SS:FF". The number has two decimal digits in each byte.
    Timecode,
    /// "192.168.1.10". The number has the first byte at the top.
    Address
};

/// A property of every device, whatever it reports.
struct PropertyInfo {
    /// Such as "proc-amp.gain".
    std::string_view name;
    std::string_view summary;
    PropertyKind kind;
    /// "lines", "pixels" or "line number"; empty for a level, which has none.
    std::string_view unit;
    /// The set that notifies of its changes.
    PropertySet set;
    /// A property that can only be set is a command: it is carried out once, and has no value afterwards.
    bool isReadable;
    bool isWritable;
    /// Of a word: the name of its enumeration, such as "VideoMode".
    std::string_view enumeration;
    /// What a number can be on any device.
    std::int64_t smallest;
    std::int64_t largest;
    /// How long a text can be that is set; 0 means as long as you like.
    std::size_t mostBytes;
};

namespace detail {

/// Words, whole numbers, timecodes and addresses are stored as numbers.
using Stored = std::variant<std::int64_t, double, bool, std::string>;

/// What a device accepts now: a range, some words, or nothing if it has not reported it.
using Offer = std::variant<std::monostate, Range<Stored>, std::vector<std::int64_t>>;

/// The words of any enumeration.
struct WordList {
    const Word<std::int64_t>* first = nullptr;
    std::size_t count = 0;

    const Word<std::int64_t>* begin() const { return first; }
    const Word<std::int64_t>* end() const { return first + count; }
};

/// A row of the table. `item` is the number of a channel, pair or preset, counted from 0, if there are several, else
/// -1.
struct PropertyRow {
    PropertyInfo info;
    int item;
    WordList words;
    bool (*exists)(const Device& device, int item);
    std::optional<Stored> (*read)(const Device& device, int item);
    void (*write)(const Device& device, int item, const Stored& value);
    Offer (*offer)(const Device& device);
};

}  // namespace detail

}  // namespace morquil
