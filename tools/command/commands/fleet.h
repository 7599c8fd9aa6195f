#pragma once

#include <functional>
#include <string>
#include <vector>

#include "command/commands/commands.h"

namespace Morquil::Command {

/// Runs a command for several devices at the same time. What it prints becomes one table whose first column is the
/// address, or one JSON object with a member for each address. With one device it is as without this function.
/// Throws: Failure with the worst exit code, after everything has been printed.
void RunForAll(const Context& context, const std::vector<std::string>& addresses,
               const std::function<void(const Context&)>& run);

}  // namespace Morquil::Command
