// Audio selection, metering and Dolby metadata.
#pragma once

#include <cstdint>

#include "MorquilAPI.h"
#include "protocol/text/name_table.h"
#include "protocol/words/word.h"

namespace Morquil {

struct AudioSelections {
    using Value = _MorquilAPIAudioSelect;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"AudioIn1",  morquilAudSelIn1},
        {"AudioIn2",  morquilAudSelIn2},
        {"AudioIn3",  morquilAudSelIn3},
        {"AudioIn4",  morquilAudSelIn4},
        {"AudioIn5",  morquilAudSelIn5},
        {"AudioIn6",  morquilAudSelIn6},
        {"AudioIn7",  morquilAudSelIn7},
        {"AudioIn8",  morquilAudSelIn8},
        {"AudioIn9",  morquilAudSelIn9},
        {"AudioIn10", morquilAudSelIn10},
        {"AudioIn11", morquilAudSelIn11},
        {"AudioIn12", morquilAudSelIn12},
        {"AudioIn13", morquilAudSelIn13},
        {"AudioIn14", morquilAudSelIn14},
        {"AudioIn15", morquilAudSelIn15},
        {"AudioIn16", morquilAudSelIn16},
        {"DolbyD1",   morquilAudSelDolbyD1},
        {"DolbyD2",   morquilAudSelDolbyD2},
        {"DolbyD3",   morquilAudSelDolbyD3},
        {"DolbyD4",   morquilAudSelDolbyD4},
        {"DolbyD5",   morquilAudSelDolbyD5},
        {"DolbyD6",   morquilAudSelDolbyD6},
        {"DolbyD7",   morquilAudSelDolbyD7},
        {"DolbyD8",   morquilAudSelDolbyD8},
        {"DolbyE1",   morquilAudSelDolbyE1},
        {"DolbyE2",   morquilAudSelDolbyE2},
        {"TT750",     morquilAudSelTone750Hz},
        {"TT1500",    morquilAudSelTone1500Hz},
        {"TT3000",    morquilAudSelTone3kHz},
        {"TT6000",    morquilAudSelTone6kHz},
        {"TTMute",    morquilAudSelMute}});
    // clang-format on
};

struct AudioInputPairs {
    using Value = _MorquilAPIAudioInSourceSelect;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"EmbedPair1", morquilAudInSrcEmbedPair1},
        {"EmbedPair2", morquilAudInSrcEmbedPair2},
        {"EmbedPair3", morquilAudInSrcEmbedPair3},
        {"EmbedPair4", morquilAudInSrcEmbedPair4},
        {"EmbedPair5", morquilAudInSrcEmbedPair5},
        {"EmbedPair6", morquilAudInSrcEmbedPair6},
        {"EmbedPair7", morquilAudInSrcEmbedPair7},
        {"EmbedPair8", morquilAudInSrcEmbedPair8},
        {"AESPair1",   morquilAudInSrcAESPair1},
        {"AESPair2",   morquilAudInSrcAESPair2},
        {"AESPair3",   morquilAudInSrcAESPair3},
        {"AESPair4",   morquilAudInSrcAESPair4},
        {"DB25Pair1",  morquilAudInSrcDB25Pair1},
        {"DB25Pair2",  morquilAudInSrcDB25Pair2},
        {"RCAPair",    morquilAudInSrcRCAPair},
        {"MutePair",   morquilAudInSrcMutePair}});
    // clang-format on
};

struct MeterChannels {
    using Value = _MorquilAPIAudioMeterChannels;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"MeterChan1&2",   morquilAudMeterChannels_1_2},
        {"MeterChan3&4",   morquilAudMeterChannels_3_4},
        {"MeterChan5&6",   morquilAudMeterChannels_5_6},
        {"MeterChan7&8",   morquilAudMeterChannels_7_8},
        {"MeterChan9&10",  morquilAudMeterChannels_9_10},
        {"MeterChan11&12", morquilAudMeterChannels_11_12},
        {"MeterChan13&14", morquilAudMeterChannels_13_14},
        {"MeterChan15&16", morquilAudMeterChannels_15_16}});
    // clang-format on
};

struct DolbyChannelModes {
    using Value = std::int32_t;
    static constexpr NameTable words{"Reserved", "Mode10", "Mode20", "Mode30", "Mode21", "Mode31", "Mode22", "Mode32"};
};

struct DolbyDrcProfiles {
    using Value = std::int32_t;
    static constexpr NameTable words{"None", "FilmStd", "FilmLight", "MusicStd", "MusicLight", "Speech"};
};

struct DolbyProgramConfigs {
    using Value = std::int32_t;
    static constexpr NameTable words{"ProgCfg51_2",    "ProgCfg51_2x1", "ProgCfg4_4", "ProgCfg4_2x2",
                                     "ProgCfg4_2_2x1", "ProgCfg4_4x1",  "ProgCfg4x2"};
};

struct DolbyMetadataSources {
    using Value = std::int32_t;
    static constexpr NameTable words{"External", "User", "PassThrough"};
};

}  // namespace Morquil
