// Derives a row of the property table from calls of the C++ layer: their types give the kind of value, and the compiler
// gives their names.
#pragma once

#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "command/properties/property.h"
#include "command/properties/spelling.h"

namespace Morquil::Command {

/// The signature of a feature's member function.
template <class Function>
struct Call;
template <class Owner, class Answer, class... Arguments>
struct Call<Answer (Owner::*)(Arguments...) const> {
    using Feature = Owner;
    using Result = Answer;
    template <class Nothing, class... All>
    struct LastOf {
        using Type = Nothing;
    };
    template <class Nothing, class First, class... Rest>
    struct LastOf<Nothing, First, Rest...> {
        using Type = typename LastOf<First, Rest...>::Type;
    };
    using Last = typename LastOf<void, Arguments...>::Type;
    static constexpr std::size_t count = sizeof...(Arguments);
};

/// "VideoProcAmp::SetGain", taken from the compiler's name for this template instance.
template <auto member>
std::string CallName() {
    std::string name(LastTwoNames(__PRETTY_FUNCTION__));
    // A device's own calls are declared in a base of the class that hosts use.
    constexpr std::string_view base = "DeviceCalls::";
    return name.starts_with(base) ? "Device::" + name.substr(base.size()) : name;
}
template <class Named>
constexpr std::string_view TypeName() {
    return LastName(__PRETTY_FUNCTION__);
}

/// The API interface that a feature of the C++ layer wraps.
template <class Feature>
constexpr std::string_view InterfaceName() {
    return TypeName<std::remove_pointer_t<decltype(std::declval<Feature>().Raw())>>();
}

/// A feature of the device, or the device itself.
template <class Feature>
Feature Open(const morquil::Device& device) {
    if constexpr (std::is_base_of_v<Feature, morquil::Device>) {
        return device;
    } else {
        return device.Ask<Feature>();
    }
}

/// Converts between a value of the API and a value of the table.
template <class Raw>
Value FromRaw(const Raw& raw) {
    if constexpr (std::is_same_v<Raw, bool> || std::is_same_v<Raw, double> || std::is_same_v<Raw, std::string>) {
        return raw;
    } else {
        return static_cast<std::int64_t>(raw);
    }
}
template <class Raw>
Raw ToRaw(const Value& value) {
    if constexpr (std::is_same_v<Raw, bool> || std::is_same_v<Raw, double>) {
        return std::get<Raw>(value);
    } else if constexpr (std::is_same_v<Raw, std::string_view>) {
        return std::get<std::string>(value);
    } else {
        return static_cast<Raw>(std::get<std::int64_t>(value));
    }
}

template <class Raw>
ValueType TypeOf() {
    if constexpr (std::is_void_v<Raw>) {
        return {};
    } else if constexpr (std::is_same_v<Raw, bool>) {
        return {.kind = Kind::YesNo};
    } else if constexpr (std::is_same_v<Raw, double>) {
        return {.kind = Kind::Decimal};
    } else if constexpr (std::is_enum_v<Raw>) {
        return {.kind = Kind::Word, .noun = Spoken(TypeName<Raw>()), .words = namedValues<Raw>};
    } else if constexpr (std::is_integral_v<Raw>) {
        return {.kind = Kind::Number,
                .smallest = std::numeric_limits<Raw>::min(),
                .largest = std::numeric_limits<Raw>::max()};
    } else {
        return {.kind = Kind::Text};
    }
}

template <auto get>
Value Read(const morquil::Device& device, int number) {
    using Getter = Call<decltype(get)>;
    const auto feature = Open<typename Getter::Feature>(device);
    if constexpr (Getter::count == 0) {
        return FromRaw((feature.*get)());
    } else {
        // The API counts from 0.
        return FromRaw((feature.*get)(static_cast<typename Getter::Last>(number - 1)));
    }
}

template <auto set>
void Write(const morquil::Device& device, int number, const Value& value) {
    using Setter = Call<decltype(set)>;
    const auto feature = Open<typename Setter::Feature>(device);
    if constexpr (Setter::count == 0) {
        (feature.*set)();
    } else if constexpr (Setter::count == 1) {
        (feature.*set)(ToRaw<typename Setter::Last>(value));
    } else {
        // The API uses integers of either sign here; both can hold these few values.
        (feature.*set)({static_cast<unsigned char>(number - 1)}, ToRaw<typename Setter::Last>(value));
    }
}

/// The words for which `isOffered` holds.
template <class Enumeration, class Condition>
Offer WordsWith(Condition isOffered) {
    std::vector<std::int64_t> offered;
    for (const auto& word : morquil::Words<Enumeration>::all) {
        if (isOffered(word.value)) {
            offered.push_back(static_cast<std::int64_t>(word.value));
        }
    }
    // No words at all means that the device has not reported them.
    return offered.empty() ? Offer() : Offer(offered);
}

template <class Number>
Offer AsLimits(const morquil::Range<Number>& range) {
    if constexpr (std::is_enum_v<Number>) {
        return WordsWith<Number>([&](Number word) { return range.min <= word && word <= range.max; });
    } else {
        return Limits{FromRaw(range.min), FromRaw(range.max)};
    }
}

/// A range, a yes or no per word, or a function of the table's own.
template <auto offer>
Offer Ask(const morquil::Device& device) {
    if constexpr (std::is_member_function_pointer_v<decltype(offer)>) {
        using Query = Call<decltype(offer)>;
        const auto feature = Open<typename Query::Feature>(device);
        if constexpr (Query::count == 0) {
            return AsLimits((feature.*offer)());
        } else {
            return WordsWith<typename Query::Last>([&](auto word) { return (feature.*offer)(word); });
        }
    } else {
        return offer(device);
    }
}

/// Adds the rows of one feature.
class FeatureRows {
public:
    FeatureRows(std::vector<Property>& all, std::string feature, morquil::PropertySet set)
        : all_(all), feature_(std::move(feature)), set_(set) {}

    /// A property that can be read and set.
    template <auto get, auto set, auto offer = nullptr>
    Property& Setting(std::string_view name, std::string_view summary) {
        return AddCalls<get, set, offer>(Add(name, summary));
    }
    /// A property that can only be read.
    template <auto get>
    Property& Reading(std::string_view name, std::string_view summary) {
        return AddCalls<get, nullptr, nullptr>(Add(name, summary));
    }
    /// A one-time action.
    template <auto set, auto offer = nullptr>
    Property& Command(std::string_view name, std::string_view summary) {
        return AddCalls<nullptr, set, offer>(Add(name, summary));
    }
    /// A property that can be read and set for each of `count`.
    template <auto get, auto set, auto offer = nullptr>
    void Settings(int count, std::string_view name, std::string_view summary, std::size_t mostBytes = 0) {
        for (int number = 1; number <= count; ++number) {
            Property& property = AddCalls<get, set, offer>(Add(name, summary)).AtMost(mostBytes);
            property.name += "." + std::to_string(number);
            property.number = number;
        }
    }

private:
    Property& Add(std::string_view name, std::string_view summary) {
        all_.push_back({.name = feature_ + "." + std::string(name), .summary = summary, .set = set_});
        return all_.back();
    }

    template <auto get, auto set, auto offer>
    static Property& AddCalls(Property& property) {
        if constexpr (!std::is_null_pointer_v<decltype(set)>) {
            property.type = TypeOf<typename Call<decltype(set)>::Last>();
            property.setter = CallName<set>();
            property.interfaceName = InterfaceName<typename Call<decltype(set)>::Feature>();
            property.write = &Write<set>;
        }
        if constexpr (!std::is_null_pointer_v<decltype(get)>) {
            property.type = TypeOf<typename Call<decltype(get)>::Result>();
            property.getter = CallName<get>();
            property.interfaceName = InterfaceName<typename Call<decltype(get)>::Feature>();
            property.read = &Read<get>;
        }
        if constexpr (!std::is_null_pointer_v<decltype(offer)>) {
            property.offer = &Ask<offer>;
            if constexpr (std::is_member_function_pointer_v<decltype(offer)>) {
                property.range = CallName<offer>();
            }
        }
        return property;
    }

    std::vector<Property>& all_;
    const std::string feature_;
    const morquil::PropertySet set_;
};

}  // namespace Morquil::Command
