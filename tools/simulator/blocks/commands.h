// Fields that order something instead of holding a value, and what follows from them.
#pragma once

#include <cstdint>

#include "protocol/blocks/all.h"
#include "simulator/blocks/members.h"
#include "simulator/blocks/observations.h"

namespace Morquil::Simulator {

/// The fields of `factory` that `bits` selects: bit 0 stands for the first key of the block, bit 1 for the second.
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

/// The settings that the commands to reset in `received` lead to; nothing when it holds none. `factory` is the block as
/// it was when the device left the factory.
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
    ForgetObservations(result);
    return result;
}

/// Commands are carried out, not kept.
template <class Set>
void ForgetCommands(Set& set) {
    ForEachKey<Set>([&](const auto& key) {
        if (key.facts.use == KeyUse::Command) {
            set.*key.member = {};
        }
    });
}

}  // namespace Morquil::Simulator
