#pragma once

#include <string>

#include "tests/simulation/dice.h"

namespace Morquil::Simulation {

struct Outcome {
    std::string trace;
    /// What went wrong first; empty when nothing did.
    std::string failure;
};

/// A device object's whole life in a world of chances. `name` stands for the world where the program has to end because
/// of it. The same throws of the dice give the same outcome.
Outcome RunScenario(Dice& dice, const std::string& name);

}  // namespace Morquil::Simulation
