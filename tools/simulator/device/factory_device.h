#pragma once

#include "simulator/blocks/device_blocks.h"
#include "simulator/device/device_identity.h"

namespace Morquil::Simulator {

/// All blocks of a device with its factory settings.
DeviceBlocks FactoryDevice(const DeviceIdentity& identity);

}  // namespace Morquil::Simulator
