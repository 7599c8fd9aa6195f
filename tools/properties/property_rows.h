// Derives a row of the property table from functions of the C++ layer: their types give the kind of value, and the
// interface definitions give their names and their property set.
#pragma once

#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "properties/offers.h"
#include "properties/property.h"
#include "properties/spelling.h"

namespace Morquil::Properties {

template <class Named>
constexpr std::string_view TypeName() {
    return LastName(__PRETTY_FUNCTION__);
}

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

/// Converts a value of the table into one of the C++ layer.
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
        return {.kind = Kind::Word,
                .noun = Spoken(TypeName<Raw>()),
                .enumeration = EnumerationFacts<Raw>::name,
                .words = namedValues<Raw>};
    } else if constexpr (std::is_integral_v<Raw>) {
        return {.kind = Kind::Number,
                .smallest = std::numeric_limits<Raw>::min(),
                .largest = std::numeric_limits<Raw>::max()};
    } else {
        return {.kind = Kind::Text};
    }
}

/// The methods count from 0. They use integers of either sign here; both can hold these few values.
constexpr unsigned char IndexOf(int number) {
    return static_cast<unsigned char>(number - 1);
}

template <auto get>
std::optional<Value> ReadWith(const morquil::Device& device, int number) {
    using Getter = Call<decltype(get)>;
    const auto wrapped = [](const auto& answer) { return answer ? std::optional(FromRaw(*answer)) : std::nullopt; };
    if constexpr (Getter::count == 0) {
        return wrapped(Try<get>(device));
    } else {
        return wrapped(Try<get>(device, IndexOf(number)));
    }
}

template <auto set>
void WriteWith(const morquil::Device& device, int number, const Value& value) {
    using Setter = Call<decltype(set)>;
    const auto feature = Open<typename Setter::Feature>(device);
    if constexpr (Setter::count == 0) {
        (feature.*set)();
    } else if constexpr (Setter::count == 1) {
        (feature.*set)(ToRaw<typename Setter::Last>(value));
    } else {
        (feature.*set)({IndexOf(number)}, ToRaw<typename Setter::Last>(value));
    }
}

/// Whether the video modes decide what a device accepts for a feature.
enum class Modes { Matter, DoNotMatter };

/// Adds the rows of one feature, whose names begin with `beginning`.
template <class Feature>
class FeatureRows {
public:
    FeatureRows(std::vector<Property>& all, std::string beginning, Modes modes = Modes::Matter)
        : all_(all), beginning_(std::move(beginning)), modes_(modes) {}

    /// A property that can be read and set. `offer`: see properties/offers.h.
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
    /// A property that can be read and set for each of `count`. Returns the rows, until others are added.
    template <auto get, auto set, auto offer = nullptr>
    std::span<Property> Settings(std::size_t count, std::string_view name, std::string_view summary) {
        for (std::size_t number = 1; number <= count; ++number) {
            Property& property = AddCalls<get, set, offer>(Add(name, summary));
            property.name += "." + std::to_string(number);
            property.number = static_cast<int>(number);
        }
        return std::span(all_).last(count);
    }

private:
    Property& Add(std::string_view name, std::string_view summary) {
        all_.push_back({.name = beginning_ + "." + std::string(name),
                        .summary = summary,
                        .set = InterfaceFacts<Feature>::propertySet,
                        .setName = InterfaceFacts<Feature>::propertySetName,
                        .interfaceName = InterfaceFacts<Feature>::name,
                        .dependsOnModes = modes_ == Modes::Matter});
        return all_.back();
    }

    template <auto get, auto set, auto offer>
    static Property& AddCalls(Property& property) {
        if constexpr (!std::is_null_pointer_v<decltype(set)>) {
            property.type = TypeOf<typename Call<decltype(set)>::Last>();
            property.setter = MethodFacts<set>::name;
            property.write = &WriteWith<set>;
        }
        if constexpr (!std::is_null_pointer_v<decltype(get)>) {
            property.type = TypeOf<typename Call<decltype(get)>::Result>();
            property.getter = MethodFacts<get>::name;
            property.read = &ReadWith<get>;
        }
        if constexpr (!std::is_null_pointer_v<decltype(offer)>) {
            property.offer = &Ask<offer>;
            property.range = CallOf<offer>();
            property.offerFollows = FollowedBy<offer>();
        }
        return property;
    }

    std::vector<Property>& all_;
    const std::string beginning_;
    const Modes modes_;
};

}  // namespace Morquil::Properties
