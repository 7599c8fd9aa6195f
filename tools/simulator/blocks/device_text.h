#pragma once

#include <string>

#include "protocol/any_block.h"
#include "protocol/block_table.h"
#include "protocol/table/block.h"

namespace Morquil::Simulator {

/// A whole block in the form in which a device sends it.
std::string DeviceText(AnyBlock block);
template <class Description>
std::string DeviceText(const ChangeSetOf<Description>& set) {
    return DeviceText(AnyBlock{placeOf<Description>, &set});
}

/// Whether the device would send only the header of the block.
bool HoldsNothing(AnyBlock block);
template <class Description>
bool HoldsNothing(const ChangeSetOf<Description>& set) {
    return HoldsNothing(AnyBlock{placeOf<Description>, &set});
}

}  // namespace Morquil::Simulator
