#pragma once

#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

/// Updates what a device offers in its current input and output modes. Offers that do not depend on a mode stay as they
/// are.
void OfferForModes(DeviceBlocks& device);

}  // namespace Morquil::Simulator
