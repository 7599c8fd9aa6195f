// What a device finds out for itself, and nobody sets from afar.
#pragma once

#include "protocol/table/block.h"

namespace Morquil::Simulator {

class DeviceBlocks;

/// Hosts send observations all the same, because a settings file holds whole blocks: they are passed over, not refused.
/// Remote lock is one of them, or a host could lock itself out.
template <class Set>
void ForgetObservations(Set& set) {
    ForEachKey<Set>([&](const auto& key) {
        if (key.facts.use == KeyUse::Observed) {
            set.*key.member = {};
        }
    });
}

/// Writes down what follows from the video modes: the sizes of the pictures that come in and go out.
void ObservePictureSizes(DeviceBlocks& device);

}  // namespace Morquil::Simulator
