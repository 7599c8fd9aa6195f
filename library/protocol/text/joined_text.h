#pragma once

#include <array>
#include <cstddef>

namespace Morquil {

/// A string literal as a template argument.
template <std::size_t size>
struct FixedText {
    char text[size]{};
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is meant to convert.
    consteval FixedText(const char (&literal)[size]) {
        for (std::size_t index = 0; index < size; ++index) {
            text[index] = literal[index];
        }
    }
    static constexpr std::size_t length = size - 1;
};

template <FixedText first, FixedText second>
inline constexpr auto joinedStorage = [] {
    std::array<char, decltype(first)::length + decltype(second)::length + 1> joined{};
    std::size_t at = 0;
    for (std::size_t index = 0; index < decltype(first)::length; ++index) {
        joined[at++] = first.text[index];
    }
    for (std::size_t index = 0; index < decltype(second)::length; ++index) {
        joined[at++] = second.text[index];
    }
    return joined;
}();

/// Two literals joined at compile time.
template <FixedText first, FixedText second>
inline constexpr const char* joinedText = joinedStorage<first, second>.data();

}  // namespace Morquil
