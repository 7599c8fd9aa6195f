#pragma once

#include <cstdint>
#include <map>

#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

/// The settings that were saved under numbers.
class Presets {
public:
    void Save(std::int32_t number, const DeviceBlocks& device) { saved_[number] = device; }

    /// Gives `device` the settings that were saved under the number, or those of `factory` when there are none. Who the
    /// device is, its locks, its place in the network, the names of the presets and what it observes stay as they are.
    void Recall(std::int32_t number, const DeviceBlocks& factory, DeviceBlocks& device) const;

private:
    std::map<std::int32_t, DeviceBlocks> saved_;
};

}  // namespace Morquil::Simulator
