#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The ranges of the video processing amplifier.
struct VideoProcAmpAvailabilityChangeSet {
    Field<Range<std::int32_t>> gainRange;
    Field<Range<std::int32_t>> blackRange;
    Field<Range<std::int32_t>> saturationRange;
    Field<Range<std::int32_t>> hueRange;
    Field<Range<std::int32_t>> ryRange;
    Field<Range<std::int32_t>> byRange;
    Field<Range<std::int32_t>> sharpRange;

    /// Ranges are read before their key is checked, and reported under this name.
    static constexpr SignedRange limits{"VideoProcAmpAvailability"};
    static bool ReadsLimits(const LineContext& line) {
        Range<std::int32_t> range;
        return ParseRange(line, limits.reportName, range);
    }

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO PROC AMP AVAILABILITY", .unknownKeyText = "Unknown video proc amp availability line \"%s\"\n", .readsValueFirst = &ReadsLimits},
        Key{"Gain range",       &VideoProcAmpAvailabilityChangeSet::gainRange,       limits}.Needed(),
        Key{"Black range",      &VideoProcAmpAvailabilityChangeSet::blackRange,      limits}.Needed(),
        Key{"Saturation range", &VideoProcAmpAvailabilityChangeSet::saturationRange, limits}.Needed(),
        Key{"Hue range",        &VideoProcAmpAvailabilityChangeSet::hueRange,        limits}.Needed(),
        Key{"RY range",         &VideoProcAmpAvailabilityChangeSet::ryRange,         limits}.Needed(),
        Key{"BY range",         &VideoProcAmpAvailabilityChangeSet::byRange,         limits}.Needed(),
        Key{"Sharp range",      &VideoProcAmpAvailabilityChangeSet::sharpRange,      limits}.Needed()};
    // clang-format on
};

/// The video processing amplifier.
struct VideoProcAmpChangeSet {
    using Offers = VideoProcAmpAvailabilityChangeSet;

    Field<std::int32_t> gain;
    Field<std::int32_t> black;
    Field<std::int32_t> saturation;
    Field<std::int32_t> hue;
    Field<std::int32_t> ry;
    Field<std::int32_t> by;
    Field<std::int32_t> sharp;
    Field<std::uint32_t> resetValues;
    Field<bool> reset;

    /// Levels are read before their key is checked, and reported under this name.
    static constexpr Signed level{"VideoProcAmp"};
    static bool ReadsLevel(const LineContext& line) {
        std::int32_t value = 0;
        return ParseValue(line, level.reportName, value);
    }

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO PROC AMP", .unknownKeyText = "Unknown video proc amp line \"%s\"\n", .bracketed = false, .readsValueFirst = &ReadsLevel},
        Key{"Gain",        &VideoProcAmpChangeSet::gain,        level}.Needed().LimitedBy(&Offers::gainRange),
        Key{"Black",       &VideoProcAmpChangeSet::black,       level}.Needed().LimitedBy(&Offers::blackRange),
        Key{"Saturation",  &VideoProcAmpChangeSet::saturation,  level}.Needed().LimitedBy(&Offers::saturationRange),
        Key{"Hue",         &VideoProcAmpChangeSet::hue,         level}.Needed().LimitedBy(&Offers::hueRange),
        Key{"RY",          &VideoProcAmpChangeSet::ry,          level}.Needed().LimitedBy(&Offers::ryRange),
        Key{"BY",          &VideoProcAmpChangeSet::by,          level}.Needed().LimitedBy(&Offers::byRange),
        Key{"Sharp",       &VideoProcAmpChangeSet::sharp,       level}.Needed().LimitedBy(&Offers::sharpRange),
        Key{"ResetValues", &VideoProcAmpChangeSet::resetValues, UnsignedAsSigned{}}.Command(),
        Key{"Reset",       &VideoProcAmpChangeSet::reset,       OneShot{}}.Command()};
    // clang-format on
};

using VideoProcAmpMessage = TextProtocolMessage<VideoProcAmpChangeSet>;
using VideoProcAmpAvailabilityMessage = TextProtocolMessage<VideoProcAmpAvailabilityChangeSet>;

}  // namespace Morquil
