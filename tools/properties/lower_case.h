#pragma once

namespace Morquil::Command {

/// Converts an ASCII letter to lower case, in any locale.
constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace Morquil::Command
