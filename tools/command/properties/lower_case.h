#pragma once

namespace Morquil::Command {

/// Of ASCII letters, whatever the locale.
constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace Morquil::Command
