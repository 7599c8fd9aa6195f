#pragma once

#include <string>

#include "command/commands/link.h"

namespace Morquil::Command {

/// The settings as the library saves them.
/// Throws: Failure with ConnectionLost, unless the device was connected and its state complete from beginning to end.
std::string PresentSettings(const Link& link);

}  // namespace Morquil::Command
