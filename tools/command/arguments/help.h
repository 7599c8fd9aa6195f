#pragma once

#include <string>

#include "command/arguments/options.h"

namespace Morquil::Command {

/// The help for the program, or for one of its commands, `name` in full ("preset save"), in lines of `width`
/// characters.
std::string ProgramHelp(const Grammar& program, std::size_t width);
std::string CommandHelp(const Grammar& program, const Grammar& command, const std::string& name, std::size_t width);

}  // namespace Morquil::Command
