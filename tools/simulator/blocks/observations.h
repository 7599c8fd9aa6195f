// Values that a device observes itself, and that cannot be set remotely.
#pragma once

#include "protocol/table/block.h"

namespace Morquil::Simulator {

class DeviceBlocks;

/// Removes observations. Hosts send them all the same, because a settings file holds whole blocks: they are ignored,
/// not refused. Remote lock is one of them, because a host could otherwise lock itself out.
template <class Set>
void RemoveObservations(Set& set) {
    ForEachKey<Set>([&](const auto& key) {
        if (key.facts.use == KeyUse::Observed) {
            set.*key.member = {};
        }
    });
}

/// Derives the sizes of the input and output pictures from the video modes.
void ObservePictureSizes(DeviceBlocks& device);

}  // namespace Morquil::Simulator
