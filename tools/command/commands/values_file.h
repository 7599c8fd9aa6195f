// Values of properties as `get --json` writes them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "command/commands/changes.h"

namespace Morquil::Command {

/// The values of a JSON object, in the order of the property table. Members that are null are left out.
/// Throws: UsageFailure for anything else, for an unknown name, or for a value that no device has. `file` is for
/// messages.
std::vector<Change> ParseValuesFile(std::string_view text, const std::string& file);

/// Whether a property says which device it is and where, not how it works: its name, its network, its presets.
bool IsIdentity(const Property& property);

/// Reads a file for `apply` or `diff`; "-" is standard input.
std::string ReadValuesFile(const std::string& file);

}  // namespace Morquil::Command
