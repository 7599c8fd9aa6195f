#include "command/text/wrapped.h"

#include <sstream>

#include "command/text/escape.h"

namespace Morquil::Command {

std::vector<std::string> Wrapped(std::string_view text, std::size_t width) {
    std::vector<std::string> lines;
    std::istringstream words{std::string(text)};
    for (std::string word; words >> word;) {
        if (lines.empty() || WidthOf(lines.back()) + 1 + WidthOf(word) > width) {
            lines.push_back(word);
        } else {
            lines.back() += " " + word;
        }
    }
    return lines;
}

}  // namespace Morquil::Command
