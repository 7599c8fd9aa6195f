// What a device accepts, as it reports it.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "properties/calls.h"
#include "properties/property.h"

namespace Morquil::Properties {

/// Converts a value of the C++ layer into one of the table.
template <class Raw>
Value FromRaw(const Raw& raw) {
    if constexpr (std::is_same_v<Raw, bool> || std::is_same_v<Raw, double> || std::is_same_v<Raw, std::string>) {
        return raw;
    } else {
        return static_cast<std::int64_t>(raw);
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
Offer AsOffer(const std::optional<morquil::Range<Number>>& range) {
    if (!range) {
        return {};
    }
    if constexpr (std::is_enum_v<Number>) {
        return WordsWith<Number>([&](Number word) { return range->min <= word && word <= range->max; });
    } else {
        return Limits{FromRaw(range->min), FromRaw(range->max)};
    }
}

// An offer is a function that reports a range, one that says yes or no to each word, or a type with
//   Of(device)    the offer
//   call          the name of the function that reports it
//   follows       the names of the properties that it depends on

/// The modes on which other offers depend.
struct InputMode {
    static constexpr std::string_view property = "input.video-mode";
    static std::optional<morquil::VideoMode> Of(const morquil::Device& device) {
        return Try<&morquil::features::InputConfiguration::GetVideoMode>(device);
    }
};
struct OutputMode {
    static constexpr std::string_view property = "output.video-mode";
    static std::optional<morquil::VideoMode> Of(const morquil::Device& device) {
        return Try<&morquil::features::OutputConfiguration::GetVideoMode>(device);
    }
};

using morquil::detail::FrameHeight;

/// A range that depends on the frame height of a mode.
template <auto range, class Mode>
struct RangeOfHeight {
    static constexpr std::string_view call = MethodFacts<range>::name;
    static constexpr std::array follows{Mode::property};
    static Offer Of(const morquil::Device& device) {
        const std::optional<morquil::VideoMode> mode = Mode::Of(device);
        return mode ? AsOffer(Try<range>(device, FrameHeight(*mode))) : Offer();
    }
};

/// A range that depends on the output mode.
template <auto range>
struct RangeOfOutputMode {
    static constexpr std::string_view call = MethodFacts<range>::name;
    static constexpr std::array follows{OutputMode::property};
    static Offer Of(const morquil::Device& device) {
        const std::optional<morquil::VideoMode> mode = OutputMode::Of(device);
        return mode ? AsOffer(Try<range>(device, static_cast<_MorquilAPIVideoMode>(*mode))) : Offer();
    }
};

/// The properties that an offer depends on; none for a function of the C++ layer.
template <auto offer>
constexpr std::span<const std::string_view> FollowedBy() {
    if constexpr (std::is_member_function_pointer_v<decltype(offer)>) {
        return {};
    } else {
        return offer.follows;
    }
}

/// The function of the C++ layer that reports an offer.
template <auto offer>
constexpr std::string_view CallOf() {
    if constexpr (std::is_member_function_pointer_v<decltype(offer)>) {
        return MethodFacts<offer>::name;
    } else {
        return offer.call;
    }
}

template <auto offer>
Offer Ask(const morquil::Device& device) {
    if constexpr (!std::is_member_function_pointer_v<decltype(offer)>) {
        return offer.Of(device);
    } else if constexpr (isRange<typename Call<decltype(offer)>::Result>) {
        return AsOffer(Try<offer>(device));
    } else {
        using Query = Call<decltype(offer)>;
        const auto feature = Open<typename Query::Feature>(device);
        return WordsWith<typename Query::Last>([&](auto word) { return (feature.*offer)(word); });
    }
}

}  // namespace Morquil::Properties
