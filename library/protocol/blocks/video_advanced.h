#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// What advanced video processing offers in the current mode.
struct VideoAdvancedAvailabilityChangeSet {
    SetField<SourceTypes> availableSourceTypes;
    Field<Range<std::int32_t>> frcApertureRange;
    Field<bool> frcApertureAvailable;
    /// The words contain spaces, so a written list does not read back; a device sends what the list can carry.
    SetField<ProcessingModes> availableProcessingModes;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO ADVANCED AVAILABILITY", .unknownKeyText = "Unknown video advanced availability line \"%s\"\n"},
        Key{"Available source types",     &VideoAdvancedAvailabilityChangeSet::availableSourceTypes,     WordList<SourceTypes>{}},
        Key{"FRC aperture range",         &VideoAdvancedAvailabilityChangeSet::frcApertureRange,         SignedRange{"VideoAdvancedAvailability"}},
        Key{"FRC aperture available",     &VideoAdvancedAvailabilityChangeSet::frcApertureAvailable,     YesNo{}},
        Key{"Available processing modes", &VideoAdvancedAvailabilityChangeSet::availableProcessingModes, WordList<ProcessingModes>{}}};
    // clang-format on
};

/// Advanced video processing.
struct VideoAdvancedChangeSet {
    using Offers = VideoAdvancedAvailabilityChangeSet;

    Field<bool> cleanCadence;
    Field<bool> scenecutDetect;
    Field<bool> antiAlias;
    Field<bool> rp177;
    WordField<SourceTypes> sourceType;
    WordField<FrcApertures> frcAperture;
    WordField<ProcessingModes> processing;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO ADVANCED", .unknownKeyText = "Unknown video advanced line \"%s\"\n", .bracketed = false},
        Key{"Clean cadence",   &VideoAdvancedChangeSet::cleanCadence,   YesNo{}},
        Key{"Scenecut detect", &VideoAdvancedChangeSet::scenecutDetect, YesNo{}},
        Key{"AntiAlias",       &VideoAdvancedChangeSet::antiAlias,      YesNo{}},
        Key{"RP177",           &VideoAdvancedChangeSet::rp177,          YesNo{}},
        Key{"Source type",     &VideoAdvancedChangeSet::sourceType,     WordOf<SourceTypes>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::availableSourceTypes),
        Key{"FRC aperture",    &VideoAdvancedChangeSet::frcAperture,    WordOf<FrcApertures>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::frcApertureRange),
        Key{"Processing",      &VideoAdvancedChangeSet::processing,     WordOf<ProcessingModes>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::availableProcessingModes)};
    // clang-format on
};

using VideoAdvancedMessage = TextProtocolMessage<VideoAdvancedChangeSet>;
using VideoAdvancedAvailabilityMessage = TextProtocolMessage<VideoAdvancedAvailabilityChangeSet>;

}  // namespace Morquil
