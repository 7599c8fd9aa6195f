// Fields that are commands instead of values, and their effects.
#pragma once

#include <cstdint>

#include "protocol/blocks/all.h"
#include "simulator/blocks/members.h"
#include "simulator/blocks/observations.h"

namespace Morquil::Simulator {

/// The fields of `factory` selected by `bits`: bit 0 selects the first key of the block, bit 1 the second.
template <class Set>
Set SelectedValues(const Set& factory, std::uint32_t bits) {
    Set selected;
    ForEachMemberOf<Set>([&](auto member) {
        if ((bits & 1U) != 0) {
            MergeField(selected.*member, factory.*member);
        }
        bits >>= 1;
    });
    return selected;
}

/// The settings that result from the reset commands in `received`; empty if there are none. `factory` holds the block's
/// factory settings.
template <class Set>
Set ResetSettings(const Set& received, const Set& factory) {
    Set result;
    if constexpr (requires { received.resetValues; }) {
        if (received.resetValues.IsPresent()) {
            Merge(result, SelectedValues(factory, received.resetValues.Get()));
        }
    }
    if constexpr (requires { received.reset; }) {
        if (received.reset.IsPresent()) {
            Merge(result, factory);
        }
    }
    RemoveObservations(result);
    return result;
}

/// Commands are carried out, not stored.
template <class Set>
void RemoveCommands(Set& set) {
    ForEachKey<Set>([&](const auto& key) {
        if (key.facts.use == KeyUse::Command) {
            set.*key.member = {};
        }
    });
}

}  // namespace Morquil::Simulator
