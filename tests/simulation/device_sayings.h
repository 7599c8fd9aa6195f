// What a device has to say: the blocks of a small device's state, and everything that is none.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tests/simulation/dice.h"
#include "tests/simulation/wire.h"

namespace Morquil::Simulation {

/// A block as it stands in a text.
Saying BlockSaying(std::string_view text);
Saying BlockSaying(const std::string& header, const Lines& lines);
/// So many in a row.
Saying Acknowledgement(bool isPositive, std::size_t count = 1);
/// Something without a meaning: a ping, an unknown block, empty lines, ...
Saying Nonsense(Dice& dice);

/// The blocks of the greeting, the preamble first.
const std::vector<Saying>& GreetingSayings();
/// The answers to what is asked for.
const std::vector<Saying>& AvailabilitySayings();

/// Puts lines without a meaning into a block, or sends it with the line ends of another system.
void Spoil(Dice& dice, Saying& saying);

}  // namespace Morquil::Simulation
