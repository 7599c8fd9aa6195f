#pragma once

#include <array>
#include <span>
#include <string_view>

namespace Morquil::Command {

/// A command of the command line: what follows it, and how it is used.
struct CommandForm {
    std::string_view name;  // of a command of a command: "preset save"
    std::string_view summary;
    std::string_view words = {};  // empty if nothing follows
    std::string_view about = {};
    int fewest = 0;  // words
    int most = 0;    // words; 0 for any number
    std::array<std::string_view, 2> examples = {};
};

/// In the order of the help. A command that has commands of its own comes before them.
std::span<const CommandForm> CommandForms();

}  // namespace Morquil::Command
