#pragma once

#include <algorithm>
#include <string_view>

namespace Morquil::Properties {

/// Converts an ASCII letter to lower case, in any locale.
constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether two texts differ at most in the case of ASCII letters.
constexpr bool IsSameButForCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char one, char other) { return Lower(one) == Lower(other); });
}

}  // namespace Morquil::Properties
