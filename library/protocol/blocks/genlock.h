#pragma once

#include <array>

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The available references and the offset ranges of every video mode.
struct GenlockAvailabilityChangeSet {
    using RangePerMode = std::array<Field<Range<std::int32_t>>, VideoModes::words.Size()>;

    SetField<ReferenceTypes> types;
    SetField<GenReferences> genReferences;
    Field<std::array<bool, GenReferences::words.Size()>> genReferencesAvailable;
    RangePerMode lineOffsetRange;
    RangePerMode pixelOffsetRange;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "GENLOCK AVAILABILITY", .unknownKeyText = "Unknown genlock availability line \"%s\"\n"},
        Key{"Types",                    &GenlockAvailabilityChangeSet::types,                  WordList<ReferenceTypes>{}},
        Key{"Gen references",           &GenlockAvailabilityChangeSet::genReferences,          WordList<GenReferences>{}},
        Key{"Gen references available", &GenlockAvailabilityChangeSet::genReferencesAvailable, TruthList<GenReferences::words.Size()>{}},
        Group{ModeSelector{"Video mode", &Selections::inputMode, UnknownMode::KeepsSelection, "Received invalid Genlock Video Mode %s string \"%s\"\n", true},
              GroupKey{"Line offset range",  &GenlockAvailabilityChangeSet::lineOffsetRange,  SignedRange{}},
              GroupKey{"Pixel offset range", &GenlockAvailabilityChangeSet::pixelOffsetRange, SignedRange{}}}};
    // clang-format on
};

/// The reference signal. Its words carry their own presence marks.
struct GenlockChangeSet {
    using Offers = GenlockAvailabilityChangeSet;

    Field<std::int32_t> type;
    Field<std::int32_t> genReference;
    Field<std::int32_t> lineOffset;
    Field<std::int32_t> pixelOffset;
    Field<bool> signalLocked;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "GENLOCK", .unknownKeyText = "Unknown genlock line \"%s\"\n"},
        Key{"Type",          &GenlockChangeSet::type,         WordOf<ReferenceTypes>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::types),
        Key{"Gen reference", &GenlockChangeSet::genReference, WordOf<GenReferences>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::genReferences).LimitedBy(&Offers::genReferencesAvailable),
        Key{"Line offset",   &GenlockChangeSet::lineOffset,   Signed{}}.LimitedPer(OfferSlot::OutputMode, &Offers::lineOffsetRange),
        Key{"Pixel offset",  &GenlockChangeSet::pixelOffset,  Signed{}}.LimitedPer(OfferSlot::OutputMode, &Offers::pixelOffsetRange),
        Key{"Signal locked", &GenlockChangeSet::signalLocked, YesNo{}}.Observed()};
    // clang-format on
};

using GenlockMessage = TextProtocolMessage<GenlockChangeSet>;
using GenlockAvailabilityMessage = TextProtocolMessage<GenlockAvailabilityChangeSet>;

}  // namespace Morquil
