#pragma once

#include <string>
#include <string_view>

namespace Morquil::Command {

/// Returns `text` with everything escaped that could steer a terminal or reorder its line. Control characters
/// (including line ends), marks that change the writing direction, and bytes that are not UTF-8 become escapes such as
/// \x1b and \u202e.
std::string Escaped(std::string_view text);

/// How many columns `text` takes up in a terminal, at one column for each character.
std::size_t WidthOf(std::string_view text);

/// The characters of `text` that fit into `width` columns.
std::string Beginning(std::string_view text, std::size_t width);

}  // namespace Morquil::Command
