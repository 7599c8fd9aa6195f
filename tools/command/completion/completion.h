#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Command {

/// What may stand in place of a word that is not finished, and what it is good for.
struct Candidate {
    std::string word;
    std::string about = {};
};

/// Stands for the names of files.
inline constexpr std::string_view filesCandidate = ":files";

/// What the last of `words`, the words of a command line after the program's name, may become. None for a line that
/// nobody understands. No device is asked.
std::vector<Candidate> Complete(std::vector<std::string> words);

}  // namespace Morquil::Command
