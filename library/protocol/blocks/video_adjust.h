#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The ranges of colour correction, clipping and aspect fill.
struct VideoAdjustAvailabilityChangeSet {
    Field<Range<std::int32_t>> redRange;
    Field<Range<std::int32_t>> greenRange;
    Field<Range<std::int32_t>> blueRange;
    Field<Range<std::uint32_t>> lumaLowRange;
    Field<Range<std::uint32_t>> lumaHighRange;
    Field<Range<std::uint32_t>> chromaLowRange;
    Field<Range<std::uint32_t>> chromaHighRange;
    Field<Range<std::uint32_t>> aspectFillLumaRange;
    Field<Range<std::uint32_t>> aspectFillCbRange;
    Field<Range<std::uint32_t>> aspectFillCrRange;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO ADJUST AVAILABILITY", .unknownKeyText = "Unknown video adjust availability line \"%s\"\n"},
        Key{"Red range",              &VideoAdjustAvailabilityChangeSet::redRange,            SignedRange{}},
        Key{"Green range",            &VideoAdjustAvailabilityChangeSet::greenRange,          SignedRange{}},
        Key{"Blue range",             &VideoAdjustAvailabilityChangeSet::blueRange,           SignedRange{}},
        Key{"Luma low range",         &VideoAdjustAvailabilityChangeSet::lumaLowRange,        UnsignedRange{}},
        Key{"Luma high range",        &VideoAdjustAvailabilityChangeSet::lumaHighRange,       UnsignedRange{}},
        Key{"Chroma low range",       &VideoAdjustAvailabilityChangeSet::chromaLowRange,      UnsignedRange{}},
        Key{"Chroma high range",      &VideoAdjustAvailabilityChangeSet::chromaHighRange,     UnsignedRange{}},
        Key{"Aspect fill luma range", &VideoAdjustAvailabilityChangeSet::aspectFillLumaRange, UnsignedRange{}},
        Key{"Aspect fill Cb range",   &VideoAdjustAvailabilityChangeSet::aspectFillCbRange,   UnsignedRange{}},
        Key{"Aspect fill Cr range",   &VideoAdjustAvailabilityChangeSet::aspectFillCrRange,   UnsignedRange{}}};
    // clang-format on
};

/// Colour correction, clipping and the colour that fills the picture's empty sides.
struct VideoAdjustChangeSet {
    using Offers = VideoAdjustAvailabilityChangeSet;

    Field<std::int32_t> red;
    Field<std::int32_t> green;
    Field<std::int32_t> blue;
    Field<std::uint32_t> lumaLow;
    Field<std::uint32_t> lumaHigh;
    Field<std::uint32_t> chromaLow;
    Field<std::uint32_t> chromaHigh;
    Field<std::uint32_t> aspectFillLuma;
    Field<std::uint32_t> aspectFillCb;
    Field<std::uint32_t> aspectFillCr;
    Field<std::uint32_t> resetValues;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO ADJUST", .unknownKeyText = "Unknown video adjust line \"%s\"\n"},
        Key{"Red",              &VideoAdjustChangeSet::red,            Signed{}}.LimitedBy(&Offers::redRange),
        Key{"Green",            &VideoAdjustChangeSet::green,          Signed{}}.LimitedBy(&Offers::greenRange),
        Key{"Blue",             &VideoAdjustChangeSet::blue,           Signed{}}.LimitedBy(&Offers::blueRange),
        Key{"Luma low",         &VideoAdjustChangeSet::lumaLow,        UnsignedAsSigned{}}.LimitedBy(&Offers::lumaLowRange),
        Key{"Luma high",        &VideoAdjustChangeSet::lumaHigh,       UnsignedAsSigned{}}.LimitedBy(&Offers::lumaHighRange),
        Key{"Chroma low",       &VideoAdjustChangeSet::chromaLow,      UnsignedAsSigned{}}.LimitedBy(&Offers::chromaLowRange),
        Key{"Chroma high",      &VideoAdjustChangeSet::chromaHigh,     UnsignedAsSigned{}}.LimitedBy(&Offers::chromaHighRange),
        Key{"Aspect fill luma", &VideoAdjustChangeSet::aspectFillLuma, UnsignedAsSigned{}}.LimitedBy(&Offers::aspectFillLumaRange),
        Key{"Aspect fill Cb",   &VideoAdjustChangeSet::aspectFillCb,   UnsignedAsSigned{}}.LimitedBy(&Offers::aspectFillCbRange),
        Key{"Aspect fill Cr",   &VideoAdjustChangeSet::aspectFillCr,   UnsignedAsSigned{}}.LimitedBy(&Offers::aspectFillCrRange),
        Key{"ResetValues",      &VideoAdjustChangeSet::resetValues,    UnsignedAsSigned{}}.Command()};
    // clang-format on
};

using VideoAdjustMessage = TextProtocolMessage<VideoAdjustChangeSet>;
using VideoAdjustAvailabilityMessage = TextProtocolMessage<VideoAdjustAvailabilityChangeSet>;

}  // namespace Morquil
