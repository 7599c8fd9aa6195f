// What depends on the combination of input mode and output mode.
#pragma once

#include <cstddef>
#include <cstdint>

#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

/// Whether the device can convert its input mode to `output`, in any aspect ratio.
bool IsConvertible(const DeviceBlocks& device, std::size_t output);

/// The mode nearest to `output` among those to which the input mode can be converted.
std::size_t NearestConvertible(const DeviceBlocks& device, std::size_t output);

/// The timecode nearest to `timecode`, eight BCD digits, among those within a day at this frame rate.
std::uint32_t NearestTimecode(std::uint32_t timecode, std::int32_t frameRate);

}  // namespace Morquil::Simulator
