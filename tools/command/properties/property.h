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
/// What a device takes: a range, some of the words (as numbers), or nothing that it has told.
using Offer = std::variant<std::monostate, Limits, std::vector<std::int64_t>>;

/// One row of the table that everything is made of: what can be read, set, watched, listed and completed.
struct Property {
    std::string name;
    std::string_view summary;
    ValueType type = {};
    morquil::PropertySet set{};           // which is told when it changes
    int number = 0;                       // of one of several, counted from 1; 0 when there is just one
    std::string_view interfaceName = {};  // "IMorquilVideoProcAmp"
    // The calls behind it, as in "VideoProcAmp::GetGain"; empty where there is none. `range` tells what a device takes.
    std::string getter = {};
    std::string setter = {};
    std::string range = {};

    // All three throw morquil::Error; `read` and `offer` throw morquil::NotKnown before the device has told.
    Value (*read)(const morquil::Device& device, int number) = nullptr;
    void (*write)(const morquil::Device& device, int number, const Value& value) = nullptr;
    Offer (*offer)(const morquil::Device& device) = nullptr;

    bool IsReadable() const { return read != nullptr; }
    bool IsWritable() const { return write != nullptr; }
    /// What is done once and has no value afterwards.
    bool IsCommand() const { return IsWritable() && !IsReadable(); }

    // For the table: what the types of the calls do not tell.
    Property& As(Kind kind) {
        type.kind = kind;
        return *this;
    }
    /// The call that tells what the device takes, where it is not the offer itself.
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

/// The property `name`. Upper and lower case are the same.
/// Throws: UsageFailure with the nearest name.
const Property& FindProperty(std::string_view name);

using Selection = std::vector<const Property*>;

/// The properties that `patterns` mean, in their order, each once; all when there is none. A pattern is a name, the
/// beginning of names up to a point ("proc-amp"), or a name with * for any letters and ? for one.
/// Throws: UsageFailure for a pattern that means nothing.
Selection SelectProperties(const std::vector<std::string>& patterns);

/// Whether `pattern` is the whole name of a property.
bool IsExactName(const std::string& pattern);

/// What the device has reported; nothing when it has not.
std::optional<Value> ReadValue(const Property& property, const morquil::Device& device);

/// What the device takes at present.
Offer ReadOffer(const Property& property, const morquil::Device& device);

}  // namespace Morquil::Command
