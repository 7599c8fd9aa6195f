#pragma once

#include <string>
#include <string_view>

namespace Morquil::Command {

/// Makes lines of the library's words, which come in pieces. Nothing in them can steer a terminal.
class TracedLines {
public:
    /// Returns: the lines that are complete now, each marked and with its line end.
    std::string Add(std::string_view piece);
    /// Returns: what has no line end.
    std::string Rest();

private:
    std::string unfinished_;
};

}  // namespace Morquil::Command
