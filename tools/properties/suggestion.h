#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace Morquil::Properties {

/// How many letters must be inserted, removed or replaced to turn one text into the other. Ignores the case of ASCII
/// letters.
std::size_t EditDistance(std::string_view left, std::string_view right);

/// The shortest candidate that begins with `text`, else the one with the smallest edit distance; of several those that
/// begin like `text`, and of those the first. Empty if none is similar to `text`.
std::string_view Nearest(std::string_view text, std::span<const std::string_view> candidates);

/// The positions of at most `most` candidates, the most similar first; of equally similar ones, those that begin like
/// `text`.
std::vector<std::size_t> NearestFirst(std::string_view text, std::span<const std::string_view> candidates,
                                      std::size_t most);

}  // namespace Morquil::Properties
