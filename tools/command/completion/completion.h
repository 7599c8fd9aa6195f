#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Command {

/// A candidate for the unfinished word, and its description.
struct Candidate {
    std::string word;
    std::string about = {};
};

/// Stands for file names.
inline constexpr std::string_view filesCandidate = ":files";

/// The candidates for the last of `words`, the words of a command line after the program's name. Empty for a line that
/// cannot be parsed. Does not contact a device. `groups` are the names of groups of devices.
std::vector<Candidate> Complete(std::vector<std::string> words, const std::vector<std::string>& groups = {});

}  // namespace Morquil::Command
