#pragma once

#include <string>

#include "tests/worlds/simulation/dice.h"

namespace Morquil::Testing::Worlds {

struct Outcome {
    std::string trace;
    /// The first failure; empty if none.
    std::string failure;
};

/// A device object's whole life in a random world. `name` identifies the world if the program has to end because of it.
/// The same throws of the dice produce the same outcome.
Outcome RunScenario(Dice& dice, const std::string& name);

}  // namespace Morquil::Testing::Worlds
