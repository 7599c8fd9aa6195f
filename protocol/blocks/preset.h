#pragma once

#include <array>

#include "protocol/block.h"
#include "protocol/message.h"

namespace Morquil {

/// Preset commands and names.
struct PresetChangeSet {
    Field<std::int32_t> save;
    Field<std::int32_t> recall;
    std::array<TextField<49, Compare::AnyCase>, 6> presetName;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "PRESET", .unknownKeyText = "Unknown preset command \"%s\"\n"},
        Key{"Save",                &PresetChangeSet::save,       Signed{}},
        Key{"Recall",              &PresetChangeSet::recall,     Signed{}},
        IndexedKey{"PresetName", &PresetChangeSet::presetName, Text{}}};
    // clang-format on
};

/// The numbers of the presets.
struct PresetAvailabilityChangeSet {
    Field<Range<std::int32_t>> presetRange;

    static constexpr Block block{
        BlockHeader{.name = "PRESET AVAILABILITY", .unknownKeyText = "Unknown preset availability command \"%s\"\n"},
        Key{"Preset range", &PresetAvailabilityChangeSet::presetRange, SignedRange{}}};
};

using PresetMessage = TextProtocolMessage<PresetChangeSet>;
using PresetAvailabilityMessage = TextProtocolMessage<PresetAvailabilityChangeSet>;

}  // namespace Morquil
