#pragma once

#include "simulator/blocks/device_blocks.h"
#include "simulator/device/device_identity.h"

namespace Morquil::Simulator {

/// All blocks of a device with its factory settings, before it has an identity.
DeviceBlocks FactoryDevice();

/// Gives a device its identity.
void Identify(DeviceBlocks& blocks, const DeviceIdentity& identity);

}  // namespace Morquil::Simulator
