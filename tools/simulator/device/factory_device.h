#pragma once

#include "simulator/blocks/device_blocks.h"
#include "simulator/device/device_identity.h"

namespace Morquil::Simulator {

/// Every block of a device as it leaves the factory.
DeviceBlocks FactoryDevice(const DeviceIdentity& identity);

}  // namespace Morquil::Simulator
