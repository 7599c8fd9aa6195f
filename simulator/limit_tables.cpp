#include "simulator/limit_tables.h"

namespace Morquil::Simulator {

namespace {

std::size_t HeightSlot(std::size_t mode) {
    return FrameHeightSlot(static_cast<std::uint32_t>(VideoModes::rows[mode].details.height));
}

}  // namespace

std::size_t InputHeightSlot(const DeviceBlocks& device) {
    return HeightSlot(InputMode(device));
}

std::size_t OutputHeightSlot(const DeviceBlocks& device) {
    return HeightSlot(OutputMode(device));
}

}  // namespace Morquil::Simulator
