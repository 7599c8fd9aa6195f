// The texts that the parsers read: protocol text, and the same keys and values as structures.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Bench {

struct TextLine {
    std::string key;
    std::string value;
};

/// A block of protocol text, split into header, keys and values.
struct TextBlock {
    std::string header;
    std::vector<TextLine> lines;
};

/// A device's complete state: each block once, as the library's writer writes it.
std::string DumpText();

/// Blocks of one line each, as a device reports changes on its front panel: every line of every block of settings.
std::string UpdatesText();

std::vector<TextBlock> SplitBlocks(std::string_view text);

}  // namespace Morquil::Bench
