#pragma once

#include <array>

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The numbers of the presets.
struct PresetAvailabilityChangeSet {
    Field<Range<std::int32_t>> presetRange;

    static constexpr Block block{
        BlockHeader{.name = "PRESET AVAILABILITY", .unknownKeyText = "Unknown preset availability command \"%s\"\n"},
        Key{"Preset range", &PresetAvailabilityChangeSet::presetRange, SignedRange{}}.Needed()};
};

/// Preset commands and names.
struct PresetChangeSet {
    using Offers = PresetAvailabilityChangeSet;

    /// A preset above the range has no name; the one above that is the factory preset and cannot be saved.
    static constexpr std::int32_t namelessPresets = 1;
    static constexpr std::int32_t recallablePresets = 2;

    Field<std::int32_t> save;
    Field<std::int32_t> recall;
    std::array<TextField<49, Compare::AnyCase>, 6> presetName;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "PRESET", .unknownKeyText = "Unknown preset command \"%s\"\n"},
        Key{"Save",                &PresetChangeSet::save,       Signed{}}.LimitedBy(&Offers::presetRange, namelessPresets).Command(),
        Key{"Recall",              &PresetChangeSet::recall,     Signed{}}.LimitedBy(&Offers::presetRange, recallablePresets).Command(),
        IndexedKey{"PresetName", &PresetChangeSet::presetName, Text{}}};
    // clang-format on
};

using PresetMessage = TextProtocolMessage<PresetChangeSet>;
using PresetAvailabilityMessage = TextProtocolMessage<PresetAvailabilityChangeSet>;

}  // namespace Morquil
