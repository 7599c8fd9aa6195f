#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "command/properties/value.h"
#include "morquil.hpp"

namespace Morquil::Command {

struct Limits {
    Value smallest;
    Value largest;
};
/// What a device accepts: a range, a list of words (as numbers), or nothing if it has not reported it.
using Offer = std::variant<std::monostate, Limits, std::vector<std::int64_t>>;

/// One row of the property table, from which reading, setting, watching, listing and completion are derived.
struct Property {
    std::string name;
    std::string_view summary;
    ValueType type = {};
    morquil::PropertySet set{};           // the set that notifies of its changes
    int number = 0;                       // its number if there are several, counted from 1; 0 if there is only one
    std::string_view interfaceName = {};  // "IMorquilVideoProcAmp"
    // The underlying calls, such as "VideoProcAmp::GetGain"; empty if there is none. `range` reports what a device
    // accepts.
    std::string getter = {};
    std::string setter = {};
    std::string range = {};

    // All three throw morquil::Error. `read` and `offer` throw morquil::NotKnown before the device has reported.
    Value (*read)(const morquil::Device& device, int number) = nullptr;
    void (*write)(const morquil::Device& device, int number, const Value& value) = nullptr;
    Offer (*offer)(const morquil::Device& device) = nullptr;

    bool IsReadable() const { return read != nullptr; }
    bool IsWritable() const { return write != nullptr; }
    /// A one-time action that has no value afterwards.
    bool IsCommand() const { return IsWritable() && !IsReadable(); }

    // For the table: what the types of the calls do not say.
    Property& As(Kind kind) {
        type.kind = kind;
        return *this;
    }
    /// The call that reports what the device accepts, if it is not the offer itself.
    Property& AskedWith(std::string call) {
        range = std::move(call);
        return *this;
    }
    Property& AtMost(std::size_t bytes) {
        type.mostBytes = bytes;
        return *this;
    }
};

/// The table, feature by feature.
const std::vector<Property>& AllProperties();

/// Finds the property `name`, ignoring case.
/// Throws: UsageFailure with the nearest name.
const Property& FindProperty(std::string_view name);

using Selection = std::vector<const Property*>;

/// The properties that match `patterns`, in the order of the patterns, each once; all properties if there are no
/// patterns. A pattern is a name, the part of names before a point ("proc-amp"), or a name in which * stands for any
/// letters and ? for one.
/// Throws: UsageFailure for a pattern that matches nothing.
Selection SelectProperties(const std::vector<std::string>& patterns);

/// Whether `pattern` is the full name of a property.
bool IsExactName(const std::string& pattern);

/// What the device has reported; nothing if it has not.
std::optional<Value> ReadValue(const Property& property, const morquil::Device& device);

/// What the device accepts now.
Offer ReadOffer(const Property& property, const morquil::Device& device);

}  // namespace Morquil::Command
