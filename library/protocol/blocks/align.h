#pragma once

#include "protocol/blocks/geometry.h"
#include "protocol/blocks/variable_aspect_ratio.h"
#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The ranges of the alignment: another block with the same fields as the variable aspect ratio's. Devices only.
struct AlignAvailabilityBlock {
    using ChangeSet = VariableAspectRatioAvailabilityChangeSet;

    static constexpr Block block{
        BlockHeader{.name = "ALIGN AVAILABILITY", .unknownKeyText = "Unknown supported align line \"%s\"\n"},
        GeometryRangeRows<"Align ">()};
};

/// The alignment of the two pictures of a 3D pair.
struct AlignChangeSet : GeometryFields {
    using Offers = AlignAvailabilityBlock;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "ALIGN", .unknownKeyText = "Unknown align line \"%s\"\n"},
        Joined(
            GeometrySideRows<"Align ">(),
            GeometryLastSizeRows<"Align ">(),
            PlainTuple{WriteOnly{Key{"ResetValues", &GeometryFields::resetValues, UnsignedAsSigned{}}.Command()}})};
    // clang-format on
};

using AlignMessage = TextProtocolMessage<AlignChangeSet>;

}  // namespace Morquil
