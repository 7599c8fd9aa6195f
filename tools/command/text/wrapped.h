#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Command {

/// Breaks `text` at blanks into lines of at most `width` characters. A longer word has a line of its own.
std::vector<std::string> Wrapped(std::string_view text, std::size_t width);

}  // namespace Morquil::Command
