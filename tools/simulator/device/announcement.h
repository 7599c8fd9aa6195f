#pragma once

#include <string>

#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

/// What hosts are told when a device has come from `before` to `after`: a block for each block that has changed, with
/// the fields that have. The fields that `mentioned` holds are told in any case.
std::string Announcement(const DeviceBlocks& before, const DeviceBlocks& after, const DeviceBlocks& mentioned);

}  // namespace Morquil::Simulator
