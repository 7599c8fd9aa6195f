// Calls of a device's functions that are chosen when the table is compiled.
#pragma once

#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "properties/facts.h"

namespace Morquil::Properties {

template <class First, class... Rest>
struct LastOf : LastOf<Rest...> {};
template <class Only>
struct LastOf<Only> {
    using Type = Only;
};

/// The signature of a function of the C++ layer.
template <class Function>
struct Call;
template <class Owner, class Answer, class... Arguments>
struct Call<Answer (Owner::*)(Arguments...) const> {
    using Feature = Owner;
    using Result = Answer;
    using Last = typename LastOf<void, Arguments...>::Type;
    static constexpr std::size_t count = sizeof...(Arguments);
};

/// The type that the last parameter of an interface's method points to.
template <class Method>
struct OutputOf;
template <class Owner, class... Parameters>
struct OutputOf<HRESULT (STDMETHODCALLTYPE Owner::*)(Parameters...)> {
    using Type = std::remove_pointer_t<typename LastOf<Parameters...>::Type>;
};

template <class Result>
inline constexpr bool isRange = false;
template <class Number>
inline constexpr bool isRange<morquil::Range<Number>> = true;

/// A feature of the device, or the device itself.
template <class Feature>
Feature Open(const morquil::Device& device) {
    if constexpr (std::is_base_of_v<Feature, morquil::Device>) {
        return device;
    } else {
        return device.Ask<Feature>();
    }
}

/// Whether a getter has written its output. A device that has fewer presets than there are rows has no value for the
/// others.
/// Throws: morquil::Error for a call that failed for another reason than a missing value.
inline bool IsAnswered(const char* call, HRESULT result) {
    if (result == E_FAIL || result == E_INVALIDARG) {
        return false;
    }
    morquil::detail::Check(call, result, morquil::detail::CallKind::Get);
    return true;
}

/// The answer of a getter; nothing if there is none. Unlike the layer's function, it makes no exception of that, which
/// is costly where many devices are read all the time.
template <auto get, class... Inputs>
std::optional<typename Call<decltype(get)>::Result> Try(const morquil::Device& device, Inputs... inputs) {
    using namespace morquil::detail;
    using Getter = Call<decltype(get)>;
    using Result = typename Getter::Result;
    constexpr auto raw = MethodFacts<get>::raw;
    constexpr const char* name = MethodFacts<get>::name.data();
    const auto feature = Open<typename Getter::Feature>(device);
    Out<typename OutputOf<std::remove_const_t<decltype(raw)>>::Type> output;
    if constexpr (isRange<Result>) {
        decltype(output) largest;
        if (!IsAnswered(name, (feature.Raw()->*raw)(inputs..., Receive(output), Receive(largest)))) {
            return std::nullopt;
        }
        using Number = decltype(Result::min);
        return Result{Take<Number>(output), Take<Number>(largest)};
    } else {
        if (!IsAnswered(name, (feature.Raw()->*raw)(inputs..., Receive(output)))) {
            return std::nullopt;
        }
        return Take<Result>(output);
    }
}

}  // namespace Morquil::Properties
