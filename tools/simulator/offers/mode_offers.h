#pragma once

#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

/// Fills in what a device offers in its present input mode and output mode. Offers that no mode changes stay as they
/// are.
void OfferForModes(DeviceBlocks& device);

}  // namespace Morquil::Simulator
