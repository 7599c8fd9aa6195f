#pragma once

#include <string>

#include "tests/worlds/simulation/scenario.h"

namespace Morquil::Testing::Worlds {

/// One connection of a host that follows what becomes of its changes, to a device that accepts, adjusts or refuses
/// them, or vanishes. Otherwise like `RunScenario`.
Outcome RunDeliveryScenario(Dice& dice, const std::string& name);

}  // namespace Morquil::Testing::Worlds
