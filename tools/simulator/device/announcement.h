#pragma once

#include <string>

#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

/// The text sent to hosts when a device has changed from `before` to `after`: one block for each changed block, with
/// its changed fields. The fields that `mentioned` holds are always included.
std::string Announcement(const DeviceBlocks& before, const DeviceBlocks& after, const DeviceBlocks& mentioned);

}  // namespace Morquil::Simulator
