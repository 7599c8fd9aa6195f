#pragma once

#include <array>

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// What ancillary data can be set to, some of it per output mode or frame height.
struct AncillaryDataAvailabilityChangeSet {
    using LineRangePerHeight = std::array<Field<Range<std::uint32_t>>, frameHeights.size()>;

    SetField<TimecodeModes> timecodeModes;
    std::array<SetField<TimecodeDropFrameModes>, VideoModes::words.Size()> timecodeDropFrameModes;
    SetField<TimecodeSources> timecodeSources;
    SetField<TimecodeLossModes> timecodeLossModes;
    SetField<TimecodeStartSources> timecodeStartSources;
    LineRangePerHeight timecodeLineRange;
    SetField<IndexReactions> indexReactions;
    SetField<AfdInsertTypes> afdInsertTypes;
    LineRangePerHeight afdOutputLineRange;
    Field<Range<std::uint32_t>> ccInputLineRange;
    Field<Range<std::uint32_t>> ccOutputLineRange;
    SetField<CcService2Sources> ccService2Sources;
    SetField<CcLanguages> ccServiceLanguages;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "ANCILLARY DATA AVAILABILITY", .unknownKeyText = "Unknown ancillary data availability line \"%s\"\n"},
        Key{"Timecode modes",         &AncillaryDataAvailabilityChangeSet::timecodeModes,        WordList<TimecodeModes>{}},
        Group{ModeSelector{"Output", &Selections::outputMode, UnknownMode::ForgetsSelection, "Received invalid Timecode DropFrame Avail output mode string \"%s\"\n", false},
              GroupKey{"Timecode drop frame modes", &AncillaryDataAvailabilityChangeSet::timecodeDropFrameModes, WordList<TimecodeDropFrameModes>{}}},
        Key{"Timecode sources",       &AncillaryDataAvailabilityChangeSet::timecodeSources,      WordList<TimecodeSources>{}},
        Key{"Timecode loss modes",    &AncillaryDataAvailabilityChangeSet::timecodeLossModes,    WordList<TimecodeLossModes>{}},
        Key{"Timecode start sources", &AncillaryDataAvailabilityChangeSet::timecodeStartSources, WordList<TimecodeStartSources>{}},
        Group{HeightSelector{"Timecode frame height"},
              GroupKey{"Timecode line range", &AncillaryDataAvailabilityChangeSet::timecodeLineRange, UnsignedRange{}}},
        Key{"Index reactions",        &AncillaryDataAvailabilityChangeSet::indexReactions,       WordList<IndexReactions>{}},
        Key{"AFD insert types",       &AncillaryDataAvailabilityChangeSet::afdInsertTypes,       WordList<AfdInsertTypes>{}},
        Group{HeightSelector{"AFD output frame height"},
              GroupKey{"AFD output line range", &AncillaryDataAvailabilityChangeSet::afdOutputLineRange, UnsignedRange{}}},
        Key{"CC input line range",    &AncillaryDataAvailabilityChangeSet::ccInputLineRange,     UnsignedRange{}},
        Key{"CC output line range",   &AncillaryDataAvailabilityChangeSet::ccOutputLineRange,    UnsignedRange{}},
        Key{"CC service2 sources",    &AncillaryDataAvailabilityChangeSet::ccService2Sources,    WordList<CcService2Sources>{}},
        Key{"CC service languages",   &AncillaryDataAvailabilityChangeSet::ccServiceLanguages,   WordList<CcLanguages>{}}};
    // clang-format on
};

/// Timecode, video index, AFD and closed captions.
struct AncillaryDataChangeSet {
    using Offers = AncillaryDataAvailabilityChangeSet;

    WordField<TimecodeModes> timecodeMode;
    Field<std::uint32_t> timecodeInputLine;
    Field<std::uint32_t> timecodeOutputLine;
    WordField<TimecodeDropFrameModes> timecodeDropFrameMode;
    WordField<TimecodeSources> timecodeSource;
    WordField<TimecodeLossModes> timecodeLossMode;
    Field<std::uint32_t> timecodeGenerateValue;
    Field<std::uint32_t> timecodeJamSyncValue;
    WordField<TimecodeStartSources> timecodeStartSource;
    Field<bool> timecodeStart;
    WordField<IndexReactions> indexReaction;
    WordField<AfdInsertTypes> afdInsertType;
    Field<std::uint32_t> afdOutputLine;
    Field<bool> ccEnabled;
    Field<std::uint32_t> ccInputLine;
    Field<std::uint32_t> ccOutputLine;
    WordField<CcService2Sources> ccService2Source;
    WordField<CcLanguages> ccService1Language;
    WordField<CcLanguages> ccService2Language;
    Field<std::uint32_t> lastInputHeight;
    Field<std::uint32_t> resetValues;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "ANCILLARY DATA", .unknownKeyText = "Unknown ancillary data line \"%s\"\n", .bracketed = false},
        Key{"Timecode mode",                    &AncillaryDataChangeSet::timecodeMode,          WordOf<TimecodeModes>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::timecodeModes),
        Key{"Timecode input line",              &AncillaryDataChangeSet::timecodeInputLine,     Unsigned{}}.LimitedPer(OfferSlot::InputHeight, &Offers::timecodeLineRange),
        Key{"Timecode output line",             &AncillaryDataChangeSet::timecodeOutputLine,    Unsigned{}}.LimitedPer(OfferSlot::OutputHeight, &Offers::timecodeLineRange),
        Key{"Timecode drop frame mode",         &AncillaryDataChangeSet::timecodeDropFrameMode, WordOf<TimecodeDropFrameModes>{"Failed to parse %s string \"%s\"\n"}}.LimitedPer(OfferSlot::OutputMode, &Offers::timecodeDropFrameModes),
        Key{"Timecode source",                  &AncillaryDataChangeSet::timecodeSource,        WordOf<TimecodeSources>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::timecodeSources),
        Key{"Timecode loss mode",               &AncillaryDataChangeSet::timecodeLossMode,      WordOf<TimecodeLossModes>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::timecodeLossModes),
        Key{"Timecode generate value",          &AncillaryDataChangeSet::timecodeGenerateValue, Timecode{}}.LimitedBy(TimeOfDay{}),
        Key{"Timecode jam sync value",          &AncillaryDataChangeSet::timecodeJamSyncValue,  Timecode{}}.LimitedBy(TimeOfDay{}),
        Key{"Timecode start source",            &AncillaryDataChangeSet::timecodeStartSource,   WordOf<TimecodeStartSources>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::timecodeStartSources),
        Key{"Timecode start",                   &AncillaryDataChangeSet::timecodeStart,         YesNo{}}.Command(),
        Key{"Index reaction",                   &AncillaryDataChangeSet::indexReaction,         WordOf<IndexReactions>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::indexReactions),
        Key{"AFD insert type",                  &AncillaryDataChangeSet::afdInsertType,         WordOf<AfdInsertTypes>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::afdInsertTypes),
        Key{"AFD output line",                  &AncillaryDataChangeSet::afdOutputLine,         Unsigned{}}.LimitedPer(OfferSlot::OutputHeight, &Offers::afdOutputLineRange),
        Key{"CC enabled",                       &AncillaryDataChangeSet::ccEnabled,             YesNo{}},
        Key{"CC input line",                    &AncillaryDataChangeSet::ccInputLine,           Unsigned{}}.LimitedBy(&Offers::ccInputLineRange),
        Key{"CC output line",                   &AncillaryDataChangeSet::ccOutputLine,          Unsigned{}}.LimitedBy(&Offers::ccOutputLineRange),
        Key{"CC service2 source",               &AncillaryDataChangeSet::ccService2Source,      WordOf<CcService2Sources>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::ccService2Sources),
        Key{"CC service1 language",             &AncillaryDataChangeSet::ccService1Language,    WordOf<CcLanguages>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::ccServiceLanguages),
        Key{"CC service2 language",             &AncillaryDataChangeSet::ccService2Language,    WordOf<CcLanguages>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::ccServiceLanguages),
        Key{"Ancillary Data last input height", &AncillaryDataChangeSet::lastInputHeight,       UnsignedAsSigned{}}.Observed(),
        Key{"ResetValues",                      &AncillaryDataChangeSet::resetValues,           UnsignedAsSigned{}}.Command()};
    // clang-format on
};

using AncillaryDataMessage = TextProtocolMessage<AncillaryDataChangeSet>;
using AncillaryDataAvailabilityMessage = TextProtocolMessage<AncillaryDataAvailabilityChangeSet>;

}  // namespace Morquil
