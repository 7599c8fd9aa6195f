// The properties of a device by name: what each is, and how to read, check and set it. Everything that shows or changes
// a device by name is derived from this table.
//
//     const Property* gain = FindProperty("proc-amp.gain");
//     const std::optional<Value> before = Read(*gain, device);
//     const Checked checked = Check(*gain, device, "12");
//     if (const Value* value = std::get_if<Value>(&checked)) {
//         Set(*gain, device, *value);
//     }
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "morquil.hpp"
#include "properties/value.h"

namespace Morquil::Properties {

struct Limits {
    Value smallest;
    Value largest;
};
/// What a device accepts now: a range, a list of words (as numbers), or nothing if it has not reported it.
using Offer = std::variant<std::monostate, Limits, std::vector<std::int64_t>>;

enum class Access {
    Read,
    ReadWrite,
    Command,  // carried out once, and has no value afterwards
};

/// One row of the table.
struct Property {
    std::string name;  // "proc-amp.gain"
    std::string_view summary;
    ValueType type = {};
    /// The set that notifies of its changes, and whose report confirms that it was set.
    morquil::PropertySet set{};
    int number = 0;  // its number if there are several, counted from 1; 0 if there is only one

    // The same for other languages. The methods count from 0 what `number` counts from 1.
    std::string_view setName = {};        // "morquilVideoProcAmpPropertySetId"
    std::string_view interfaceName = {};  // "IMorquilVideoProcAmp"
    std::string_view getter = {};         // "VideoProcAmp::GetGain"; empty if there is none
    std::string_view setter = {};
    std::string_view range = {};                          // reports what the device accepts
    std::span<const std::string_view> offerFollows = {};  // the properties that change what the device accepts
    bool dependsOnModes = true;  // what is accepted may differ with the video modes, also in ways that no call reports
    bool changesModes = false;   // setting it may change the video modes

    // For `Exists`, `Read`, `Set` and `Offered`.
    bool (*exists)(const morquil::Device& device, int number) = nullptr;
    std::optional<Value> (*read)(const morquil::Device& device, int number) = nullptr;
    void (*write)(const morquil::Device& device, int number, const Value& value) = nullptr;
    Offer (*offer)(const morquil::Device& device) = nullptr;

    bool IsReadable() const { return read != nullptr; }
    bool IsWritable() const { return write != nullptr; }
    bool IsCommand() const { return IsWritable() && !IsReadable(); }
    Properties::Access Access() const {
        return IsCommand()    ? Properties::Access::Command
               : IsWritable() ? Properties::Access::ReadWrite
                              : Properties::Access::Read;
    }

    // For the table: what the types of the calls do not say.
    Property& As(Kind kind) {
        type.kind = kind;
        return *this;
    }
    Property& In(Unit unit) {
        type.unit = unit;
        return *this;
    }
    Property& ChangingModes() {
        changesModes = true;
        return *this;
    }
    Property& AtMost(std::size_t bytes) {
        type.mostBytes = bytes;
        return *this;
    }
};

/// The table, feature by feature. It never changes: pointers to its rows, and their positions in it, may be kept.
const std::vector<Property>& AllProperties();

/// The property `name`, ignoring case; null if there is none.
const Property* FindProperty(std::string_view name);

/// The name of a property, or the beginning of names, that is most like `name`; empty if none is. A function of the C++
/// layer ("VideoProcAmp::SetGain") has the name of its property.
std::string_view NearestName(std::string_view name);

using Selection = std::vector<const Property*>;

/// The properties that match `pattern`, in the order of the table; none if nothing matches. A pattern is a name, the
/// part of names before a point ("proc-amp"), or a name in which * stands for any letters and ? for one.
Selection Matching(std::string_view pattern);

// Threads: any, for all that follow. They throw morquil::Error only when a call fails for want of memory, or, from
// `Set`, because the library refuses the value or cannot send.

/// Whether the device has the property, as far as it has reported that: it may have fewer presets than there are names.
bool Exists(const Property& property, const morquil::Device& device);

/// What the device has reported; nothing if it has not, or if the property cannot be read. Never waits.
std::optional<Value> Read(const Property& property, const morquil::Device& device);

/// What the device accepts now; it changes with other settings.
Offer Offered(const Property& property, const morquil::Device& device);

/// Whether `value` may be set, as far as `offer` tells; nothing if so.
std::optional<Refusal> CheckOffered(const Property& property, const Offer& offer, const Value& value);

/// The value that `text` means for a property, if the device accepts it now. Nothing is sent: check everything, then
/// set it. What the device has not reported is not checked.
Checked Check(const Property& property, const morquil::Device& device, std::string_view text);

/// Queues the change; the device's report in the property's set confirms it. Only for a property that can be set, and
/// a value of its type; a command without a value ignores it.
void Set(const Property& property, const morquil::Device& device, const Value& value);

/// "-60 to 60", or the words; empty if the device has not reported it.
std::string FormatOffer(const Property& property, const Offer& offer);

/// The name of an access: "read", "read/write", "command".
std::string_view NameOf(Access access);

}  // namespace Morquil::Properties
