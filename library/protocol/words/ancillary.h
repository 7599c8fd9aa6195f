// Timecode, video index and closed captions.
#pragma once

#include "MorquilAPI.h"
#include "protocol/text/name_table.h"
#include "protocol/words/word.h"

namespace Morquil {

struct TimecodeModes {
    using Value = _MorquilAPITimecodeMode;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Off",        morquilAPITimecodeModeOff},
        {"Input",      morquilAPITimecodeModeInput},
        {"InputRegen", morquilAPITimecodeModeInputRegen},
        {"Generate",   morquilAPITimecodeModeGenerator},
        {"JamSync",    morquilAPITimecodeModeJamSync}});
    // clang-format on
};

struct TimecodeDropFrameModes {
    using Value = _MorquilAPITimecodeDropFrameMode;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Auto", morquilAPITimecodeDropFrameModeAuto},
        {"DF",   morquilAPITimecodeDropFrameModeDF},
        {"NDF",  morquilAPITimecodeDropFrameModeNDF}});
    // clang-format on
};

struct TimecodeSources {
    using Value = _MorquilAPITimecodeSource;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"VITC", morquilAPITimecodeSourceVITC},
        {"LTC",  morquilAPITimecodeSourceLTC}});
    // clang-format on
};

struct TimecodeLossModes {
    using Value = _MorquilAPITimecodeLossMode;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Continue", morquilAPITimecodeLossModeContinue},
        {"Stop",     morquilAPITimecodeLossModeStop}});
    // clang-format on
};

struct TimecodeStartSources {
    using Value = _MorquilAPITimecodeStartSource;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"User",  morquilAPITimecodeStartSourceFromUser},
        {"Input", morquilAPITimecodeStartSourceFromInput}});
    // clang-format on
};

struct IndexReactions {
    using Value = _MorquilAPIVideoIndexReaction;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Off", morquilAPIVideoIndexReactionOff},
        {"On",  morquilAPIVideoIndexReactionAFD}});
    // clang-format on
};

struct AfdInsertTypes {
    using Value = _MorquilAPIAFDInsertType;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Off",    morquilAPIAFDInsertTypeOff},
        {"Auto",   morquilAPIAFDInsertTypeAuto},
        {"Bypass", morquilAPIAFDInsertTypeBypass},
        {"0000",   morquilAPIAFDInsertType0},
        {"0001",   morquilAPIAFDInsertType1},
        {"0010",   morquilAPIAFDInsertType2},
        {"0011",   morquilAPIAFDInsertType3},
        {"0100",   morquilAPIAFDInsertType4},
        {"0101",   morquilAPIAFDInsertType5},
        {"0110",   morquilAPIAFDInsertType6},
        {"0111",   morquilAPIAFDInsertType7},
        {"1000",   morquilAPIAFDInsertType8},
        {"1001",   morquilAPIAFDInsertType9},
        {"1010",   morquilAPIAFDInsertTypeA},
        {"1011",   morquilAPIAFDInsertTypeB},
        {"1100",   morquilAPIAFDInsertTypeC},
        {"1101",   morquilAPIAFDInsertTypeD},
        {"1110",   morquilAPIAFDInsertTypeE},
        {"1111",   morquilAPIAFDInsertTypeF}});
    // clang-format on
};

struct CcService2Sources {
    using Value = _MorquilAPICCService2Source;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"CC2", morquilAPICCServiceSourceCC2},
        {"CC3", morquilAPICCServiceSourceCC3}});
    // clang-format on
};

struct CcLanguages {
    using Value = _MorquilAPICCServiceLanguage;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"English", morquilAPICCServiceLanguageEnglish},
        {"French",  morquilAPICCServiceLanguageFrench},
        {"German",  morquilAPICCServiceLanguageGerman},
        {"Italian", morquilAPICCServiceLanguageItalian},
        {"Spanish", morquilAPICCServiceLanguageSpanish}});
    // clang-format on
};

}  // namespace Morquil
