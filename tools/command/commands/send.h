#pragma once

#include "command/commands/changes.h"
#include "command/commands/link.h"

namespace Morquil::Command {

/// Sends a change, and waits until the device has confirmed or refused it. `isFirst`: nothing has been sent before.
/// Throws: Failure with NotApplied, TimedOut or ConnectionLost; with Usage if the library does not accept the first
/// value; Interruption.
void SendChange(const Change& change, const Link& link, bool isFirst);

}  // namespace Morquil::Command
