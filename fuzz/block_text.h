// What a device accepts as one block.
#pragma once

#include <algorithm>
#include <string_view>

namespace Morquil::Fuzz {

/// Whether the text is one block: lines, the first of them the header, and one empty line at the end.
inline bool IsOneBlock(std::string_view text) {
    return text.size() > 2 && text.front() != '\n' && text.find("\n\n") == text.size() - 2;
}

/// The length of the longest line, without its line feed.
inline std::size_t LongestLine(std::string_view text) {
    std::size_t longest = 0;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size());
        longest = std::max(longest, length);
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return longest;
}

/// How many characters of a line are read at most.
inline constexpr std::size_t longestReadLine = 255;

}  // namespace Morquil::Fuzz
