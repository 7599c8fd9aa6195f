// What is read: protocol text, and the same keys and values taken apart.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Bench {

struct TextLine {
    std::string key;
    std::string value;
};

/// A block of protocol text, taken apart.
struct TextBlock {
    std::string header;
    std::vector<TextLine> lines;
};

/// Everything that a device says of itself: each block once, as the library's writer writes it.
std::string DumpText();

/// Blocks of one line each, as a device reports what somebody turns: every line of every block of settings.
std::string UpdatesText();

std::vector<TextBlock> TakeApart(std::string_view text);

}  // namespace Morquil::Bench
