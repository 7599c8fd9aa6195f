#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace Morquil::Command {

/// How many letters must be put in, left out or replaced to make one text of the other. Upper and lower case of ASCII
/// letters are the same.
std::size_t EditDistance(std::string_view left, std::string_view right);

/// The candidate that takes the fewest edits, the first of several; empty when there is none that resembles `text`.
std::string_view Nearest(std::string_view text, std::span<const std::string_view> candidates);

}  // namespace Morquil::Command
