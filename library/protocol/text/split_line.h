#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace Morquil {

/// The two parts of a line; both refer into it.
struct KeyAndValue {
    std::string_view key;
    std::string_view value;  ///< empty when the line has none
};

/// The first place from `at` on that is neither space nor colon, or the text's size.
constexpr std::size_t SkipSeparators(std::string_view text, std::size_t at) {
    while (at < text.size() && (text[at] == ' ' || text[at] == ':')) {
        ++at;
    }
    return std::min(at, text.size());
}

/// The key runs from the first character that is neither space nor colon to the next colon; the value runs from the
/// first such character after a colon to the end of the line. In a line that begins with a colon, that colon already
/// counts, so the value starts at the key's second character.
constexpr KeyAndValue SplitLine(std::string_view line) {
    const std::size_t keyStart = SkipSeparators(line, 0);
    const bool colonIsFirst = keyStart > 0 && line.find(':') < keyStart;
    const std::size_t keyEnd = std::min(line.find(':', keyStart), line.size());
    const std::size_t valueStart = SkipSeparators(line, (colonIsFirst ? keyStart : keyEnd) + 1);
    return {line.substr(keyStart, (keyEnd < valueStart ? keyEnd : line.size()) - keyStart), line.substr(valueStart)};
}

}  // namespace Morquil
