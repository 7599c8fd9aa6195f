#pragma once

#include <string>
#include <utility>
#include <vector>

#include "command/properties/value.h"
#include "morquil.hpp"

namespace Morquil::Command {

/// The state of a device in a few lines, each with its title.
std::vector<std::pair<std::string, std::string>> StatusOf(const morquil::Device& device);

/// The same values by their names.
Json StatusAsJson(const morquil::Device& device);

}  // namespace Morquil::Command
