#pragma once

#include <string>
#include <string_view>

namespace Morquil::Command {

/// Assembles the library's output, which arrives in pieces, into lines that cannot steer a terminal.
class TracedLines {
public:
    /// Returns: the lines that are now complete, each with its mark and line end.
    std::string Add(std::string_view piece);
    /// Returns: the unfinished line.
    std::string Rest();

private:
    std::string unfinished_;
};

}  // namespace Morquil::Command
