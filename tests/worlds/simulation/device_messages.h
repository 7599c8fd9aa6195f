// What a device sends: the blocks of a small device's state, and everything else.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tests/worlds/simulation/dice.h"
#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// A block, parsed from its text.
DeviceMessage BlockMessage(std::string_view text);
DeviceMessage BlockMessage(const std::string& header, const Lines& lines);
/// `count` in a row.
DeviceMessage Acknowledgement(bool isPositive, std::size_t count = 1);
/// Something meaningless: a ping, an unknown block, empty lines, ...
DeviceMessage Nonsense(Dice& dice);

/// The blocks of the greeting, the preamble first.
const std::vector<DeviceMessage>& GreetingMessages();
/// The answers to requests.
const std::vector<DeviceMessage>& AvailabilityMessages();

/// Puts meaningless lines into a block, or gives it the line ends of another system.
void Spoil(Dice& dice, DeviceMessage& message);

}  // namespace Morquil::Testing::Worlds
