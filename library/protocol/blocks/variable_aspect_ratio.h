#pragma once

#include "protocol/blocks/geometry.h"
#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The ranges of the variable aspect ratio.
struct VariableAspectRatioAvailabilityChangeSet : GeometryRangeFields {
    static constexpr Block block{BlockHeader{.name = "VARIABLE ASPECT RATIO AVAILABILITY",
                                             .unknownKeyText = "Unknown supported variable aspect ratio line \"%s\"\n"},
                                 GeometryRangeRows<"Variable Aspect Ratio ">()};
};

/// The variable aspect ratio: where the picture goes in the frame.
struct VariableAspectRatioChangeSet : GeometryFields {
    using Offers = VariableAspectRatioAvailabilityChangeSet;

    Field<bool> zoomCrop;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VARIABLE ASPECT RATIO", .unknownKeyText = "Unknown variable aspect ratio line \"%s\"\n"},
        Joined(
            GeometrySideRows<"Variable Aspect Ratio ">(),
            PlainTuple{Key{"Variable Aspect Ratio zoom/crop", &VariableAspectRatioChangeSet::zoomCrop, YesNo{}}},
            GeometryLastSizeRows<"Variable Aspect Ratio ">(),
            PlainTuple{Key{"ResetValues", &GeometryFields::resetValues, UnsignedAsSigned{}}.Command()})};
    // clang-format on
};

using VariableAspectRatioMessage = TextProtocolMessage<VariableAspectRatioChangeSet>;
using VariableAspectRatioAvailabilityMessage = TextProtocolMessage<VariableAspectRatioAvailabilityChangeSet>;

}  // namespace Morquil
