// Picture processing, the test pattern generator, the reference signal and 3D.
#pragma once

#include <cstdint>

#include "MorquilAPI.h"
#include "protocol/text/name_table.h"
#include "protocol/words/word.h"

namespace Morquil {

struct TestPatterns {
    using Value = _MorquilAPITestPattern;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"None",       morquilAPITestPatternNone},
        {"SMPTEBars",  morquilAPITestPatternSmpteBars},
        {"Bars",       morquilAPITestPatternBars},
        {"Black",      morquilAPITestPatternBlack},
        {"Grid",       morquilAPITestPatternGrid},
        {"Multiburst", morquilAPITestPatternMultiburst}});
    // clang-format on
};

struct TestTones {
    using Value = _MorquilAPITestTone;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"None",       morquilAPITestToneNone},
        {"Tone750Hz",  morquilAPITestTone750Hz},
        {"Tone1500Hz", morquilAPITestTone1500Hz},
        {"Tone3KHz",   morquilAPITestTone3KHz},
        {"Tone6KHz",   morquilAPITestTone6KHz}});
    // clang-format on
};

struct SourceTypes {
    using Value = _MorquilAPISourceType;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Auto",  morquilAPISourceTypeAuto},
        {"Video", morquilAPISourceTypeVideo},
        {"Film",  morquilAPISourceTypeFilm}});
    // clang-format on
};

struct FrcApertures {
    using Value = _MorquilAPIFrcAperture;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"0", morquilAPIFrcAperture0},
        {"1", morquilAPIFrcAperture1},
        {"2", morquilAPIFrcAperture2},
        {"3", morquilAPIFrcAperture3}});
    // clang-format on
};

struct ProcessingModes {
    using Value = _MorquilAPIProcMode;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Highest Quality", morquilAPIProcModeNormal},
        {"Lowest Latency",  morquilAPIProcModeSimple}});
    // clang-format on
};

struct ReferenceTypes {
    using Value = _MorquilAPIVideoReferenceType;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Input",    morquilAPIVideoReferenceTypeInput},
        {"Internal", morquilAPIVideoReferenceTypeInternal},
        {"External", morquilAPIVideoReferenceTypeExternal}});
    // clang-format on
};

struct GenReferences {
    using Value = _MorquilAPIGenReference;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Blackburst", morquilAPIGenReferenceBlackburst},
        {"TriLevel",   morquilAPIGenReferenceTriLevel}});
    // clang-format on
};

struct Modes3D {
    using Value = _MorquilAPI3dMode;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"3DModeOff",     morquilAPI3dModeOff},
        {"3DModeConvert", morquilAPI3dModeConvert},
        {"3DMode2Dto3D",  morquilAPI3dMode2dTo3d},
        {"3DModeAlign",   static_cast<Value>(3)}});  // devices know this mode; the API has no name for it
    // clang-format on
};

struct Types3D {
    using Value = _MorquilAPI3dType;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"3DFullFrame",  morquilAPI3dTypeFullFrame},
        {"3DSideBySide", morquilAPI3dTypeSideBySide},
        {"3DTopBottom",  morquilAPI3dTypeTopBottom},
        {"3DLineByLine", morquilAPI3dTypeLineByLine}});
    // clang-format on
};

struct Flips3D {
    using Value = std::int32_t;
    static constexpr NameTable words{"Off", "Horizontal", "Vertical", "Both"};
};

}  // namespace Morquil
