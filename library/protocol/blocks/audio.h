#pragma once

#include <array>

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The ranges of audio levels and delays, and the available channels.
struct AudioAvailabilityChangeSet {
    Field<Range<std::int32_t>> audioLevelRange;
    Field<Range<std::int32_t>> analogInputRefLevelRange;
    Field<Range<std::int32_t>> analogDelayRange;
    Field<Range<std::int32_t>> metadataDialogLevelRange;
    SetField<AudioSelections> audioSelections;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "AUDIO AVAILABILITY", .unknownKeyText = "Unknown supported audio avail line \"%s\"\n"},
        Key{"Audio level range",                     &AudioAvailabilityChangeSet::audioLevelRange,          SignedRange{}},
        Key{"Analog input ref level range",          &AudioAvailabilityChangeSet::analogInputRefLevelRange, SignedRange{}},
        Key{"Analog delay range",                    &AudioAvailabilityChangeSet::analogDelayRange,         SignedRange{}},
        WriteOnly{Key{"Metadata dialog level range", &AudioAvailabilityChangeSet::metadataDialogLevelRange, SignedRange{}}},
        Key{"Audio selections",                      &AudioAvailabilityChangeSet::audioSelections,          WordList<AudioSelections>{}}};
    // clang-format on
};

/// Audio routing, levels, delays and metadata.
struct AudioChangeSet {
    using Offers = AudioAvailabilityChangeSet;

    static constexpr std::size_t channels = morquilAudioMaxOutputChannels;
    static constexpr std::size_t pairs = morquilAudioMaxPairs;

    std::array<WordField<AudioSelections>, channels> audioOut;
    std::array<WordField<AudioSelections>, pairs> audioEncode;
    std::array<WordField<AudioInputPairs>, pairs> audioInPair;
    std::array<Field<std::int32_t>, channels> audioInLevel;
    std::array<Field<bool>, channels> audioInPhase;
    std::array<Field<std::int32_t>, pairs> audioDDLevel;
    std::array<Field<bool>, pairs> audioDDPhase;
    std::array<Field<std::int32_t>, pairs> audioUserDelay;
    Field<bool> aesOutputSelect;
    Field<std::int32_t> analogInputRefLevel;
    WordField<DolbyMetadataSources> metadataSource;
    WordField<DolbyChannelModes> metadataChannelMode;
    WordField<DolbyDrcProfiles> metadataDrcProfile;
    Field<bool> metadataLfeSelect;
    Field<std::int32_t> metadataDialogLevel;
    WordField<DolbyProgramConfigs> metadataProgramConfig;
    WordField<MeterChannels> audioMeterChannels;
    Field<std::uint32_t> resetValues;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "AUDIO", .unknownKeyText = "Unknown Audio line \"%s\"\n"},
        IndexedKey{"AudioOut",                 &AudioChangeSet::audioOut,              WordOf<AudioSelections>{"Received invalid Audio Select Input Source %s string \"%s\"\n"}}.LimitedBy(&Offers::audioSelections),
        IndexedKey{"AudioEncode",              &AudioChangeSet::audioEncode,           WordOf<AudioSelections>{"Received invalid Audio Encode Source %s string \"%s\"\n"}}.LimitedBy(&Offers::audioSelections),
        IndexedKey{"AudioInPair",              &AudioChangeSet::audioInPair,           WordOf<AudioInputPairs>{"Received invalid Audio Input Pair Source %s string \"%s\"\n"}},
        InTurn(IndexedKey{"AudioInLevel",      &AudioChangeSet::audioInLevel,          Signed{}}.LimitedBy(&Offers::audioLevelRange),
               IndexedKey{"AudioInPhase",      &AudioChangeSet::audioInPhase,          Phase{}}),
        InTurn(IndexedKey{"AudioDDLevel",      &AudioChangeSet::audioDDLevel,          Signed{}}.LimitedBy(&Offers::audioLevelRange),
               IndexedKey{"AudioDDPhase",      &AudioChangeSet::audioDDPhase,          Phase{}}),
        IndexedKey{"AudioUserDelay",           &AudioChangeSet::audioUserDelay,        Signed{}}.LimitedBy(&Offers::analogDelayRange),
        Key{"AES output select",                 &AudioChangeSet::aesOutputSelect,       YesNo{}},
        Key{"Analog input ref level",            &AudioChangeSet::analogInputRefLevel,   Signed{}}.LimitedBy(&Offers::analogInputRefLevelRange),
        Key{"Metadata source",                   &AudioChangeSet::metadataSource,        WordOf<DolbyMetadataSources>{"Failed to parse %s string \"%s\"\n"}},
        Key{"Metadata channel mode",             &AudioChangeSet::metadataChannelMode,   WordOf<DolbyChannelModes>{"Failed to parse %s string \"%s\"\n"}},
        Key{"Metadata drc profile",              &AudioChangeSet::metadataDrcProfile,    WordOf<DolbyDrcProfiles>{"Failed to parse %s string \"%s\"\n"}},
        Key{"Metadata lfe select",               &AudioChangeSet::metadataLfeSelect,     YesNo{}},
        Key{"Metadata dialog level",             &AudioChangeSet::metadataDialogLevel,   Signed{}}.LimitedBy(FixedLimit{-31, -1}),
        WriteOnly{Key{"Metadata program config", &AudioChangeSet::metadataProgramConfig, WordOf<DolbyProgramConfigs>{}}},
        Key{"Audio meter channels",              &AudioChangeSet::audioMeterChannels,    WordOf<MeterChannels>{"Failed to parse %s string \"%s\"\n"}},
        Key{"ResetValues",                       &AudioChangeSet::resetValues,           UnsignedAsSigned{}}.Command()};
    // clang-format on
};

using AudioMessage = TextProtocolMessage<AudioChangeSet>;
using AudioAvailabilityMessage = TextProtocolMessage<AudioAvailabilityChangeSet>;

}  // namespace Morquil
