#pragma once

#include <cstdint>
#include <map>

#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

/// The settings saved as numbered presets.
class Presets {
public:
    void Save(std::int32_t number, const DeviceBlocks& device) { saved_[number] = device; }

    /// Gives `device` the settings saved under the number, or those of `factory` if there are none. The device's
    /// identity, locks, network settings, preset names and observations do not change.
    void Recall(std::int32_t number, const DeviceBlocks& factory, DeviceBlocks& device) const;

private:
    std::map<std::int32_t, DeviceBlocks> saved_;
};

}  // namespace Morquil::Simulator
