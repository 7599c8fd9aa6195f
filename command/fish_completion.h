#pragma once

#include <string>

namespace Morquil::Command {

/// The script for fish, which tells conditions and candidates apart instead of running code for each word.
std::string FishScript();

}  // namespace Morquil::Command
