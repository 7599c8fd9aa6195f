#pragma once

#include <algorithm>
#include <string_view>

#include "protocol/text/ascii.h"

namespace Morquil::Simulator {

/// Calls `visit` with every line of `text`, without its line feed. Text after the last line feed is also a line.
template <class Visit>
void ForEachLine(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        visit(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    }
}

/// Whether `text` begins with `start`; ASCII letters may differ in case.
constexpr bool StartsIgnoringCase(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && EqualsIgnoringCase(text.substr(0, start.size()), start);
}

/// `text` without leading and trailing blanks and carriage returns.
constexpr std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Removes a word and the blanks after it from `rest`, and returns the word.
constexpr std::string_view TakeWord(std::string_view& rest) {
    const std::size_t end = std::min(rest.find_first_of(" \t"), rest.size());
    const std::string_view word = rest.substr(0, end);
    rest = Trimmed(rest.substr(end));
    return word;
}

}  // namespace Morquil::Simulator
