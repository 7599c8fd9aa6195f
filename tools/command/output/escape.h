#pragma once

#include <string>
#include <string_view>

namespace Morquil::Command {

/// `text` without anything that could steer a terminal or reorder its line: control characters (also line ends), marks
/// that change the direction of writing, and bytes that are no UTF-8 are shown as escapes such as \x1b and \u202e.
std::string Escaped(std::string_view text);

/// How many characters of `text` a terminal shows side by side, at one column each.
std::size_t WidthOf(std::string_view text);

}  // namespace Morquil::Command
