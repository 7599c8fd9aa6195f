#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// Whether noise reduction is available in the current mode, and its range.
struct NoiseReductionAvailabilityChangeSet {
    Field<Range<std::int32_t>> biasRange;
    Field<bool> noiseReductionAvailable;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "NOISE REDUCTION AVAILABILITY", .unknownKeyText = "Unknown supported noise reduction line \"%s\"\n"},
        Key{"Bias range",                &NoiseReductionAvailabilityChangeSet::biasRange,               SignedRange{}},
        Key{"Noise reduction available", &NoiseReductionAvailabilityChangeSet::noiseReductionAvailable, YesNo{}}};
    // clang-format on
};

/// Noise reduction.
struct NoiseReductionChangeSet {
    using Offers = NoiseReductionAvailabilityChangeSet;

    Field<bool> enabled;
    Field<std::int32_t> bias;
    Field<bool> splitScreen;
    Field<bool> redOverlay;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "NOISE REDUCTION", .unknownKeyText = "Unknown noise reduction line \"%s\"\n"},
        Key{"Enabled",      &NoiseReductionChangeSet::enabled,     YesNo{}}.LimitedBy(&Offers::noiseReductionAvailable),
        Key{"Bias",         &NoiseReductionChangeSet::bias,        Signed{}}.LimitedBy(&Offers::biasRange),
        Key{"Split screen", &NoiseReductionChangeSet::splitScreen, YesNo{}},
        Key{"Red overlay",  &NoiseReductionChangeSet::redOverlay,  YesNo{}}};
    // clang-format on
};

using NoiseReductionMessage = TextProtocolMessage<NoiseReductionChangeSet>;
using NoiseReductionAvailabilityMessage = TextProtocolMessage<NoiseReductionAvailabilityChangeSet>;

}  // namespace Morquil
