// Which devices a command line names.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "command/arguments/options.h"

namespace Morquil::Command {

using Groups = std::map<std::string, std::vector<std::string>>;

/// Reads a file of groups. Each line is a name, a colon, and addresses, separated by blanks; what follows a # is a
/// comment. A group that is named again grows.
/// Throws: UsageFailure with the number of a line that is neither.
Groups ParseGroups(std::string_view text);

/// The names in a file of groups, for suggestions; none if it cannot be read.
std::vector<std::string> NamesOfGroups(const std::string& file);

/// Reads a file of devices: addresses and groups, separated by blanks or line ends; what follows a # is a comment.
std::vector<std::string> ParseDevices(std::string_view text);

/// The addresses of all devices that `options` name, in order, each once; `defaultDevice` if they name none. Reads
/// `groupsFile` only if a group is named.
/// Throws: UsageFailure.
std::vector<std::string> DevicesOf(const Options& options, const std::string& defaultDevice,
                                   const std::string& groupsFile);

/// The same for words of the command line.
std::vector<std::string> ExpandDevices(const std::vector<std::string>& words, const std::string& groupsFile);

}  // namespace Morquil::Command
