// Changes that are not made yet.
#pragma once

#include <vector>

#include "command/commands/changes.h"
#include "command/commands/commands.h"
#include "command/output/rendering.h"

namespace Morquil::Command {

/// "gain  0 -> 12".
Row PlannedAsRow(const Change& change, const morquil::Device& device);
Json PlannedAsJson(const Change& change, const morquil::Device& device);

/// What would be sent, for a dry run.
void PrintPlan(const Context& context, const std::vector<Change>& changes, const Link& link);

}  // namespace Morquil::Command
