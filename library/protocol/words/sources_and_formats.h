// Picture sources, outputs and formats.
#pragma once

#include "MorquilAPI.h"
#include "protocol/text/name_table.h"
#include "protocol/words/word.h"

namespace Morquil {

struct VideoSources {
    using Value = _MorquilAPIVideoSource;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"SDI1",      morquilAPIVideoSourceSDI1},
        {"HDMI",      morquilAPIVideoSourceHDMI},
        {"Component", morquilAPIVideoSourceComponent},
        {"Composite", morquilAPIVideoSourceComposite},
        {"SVideo",    morquilAPIVideoSourceSVideo},
        {"Optical",   morquilAPIVideoSourceFiberOpt},
        {"SDI2",      morquilAPIVideoSourceSDI2}});
    // clang-format on
};

struct AudioSources {
    using Value = _MorquilAPIAudioSource;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Embedded", morquilAPIAudioSourceEmbedded},
        {"AES",      morquilAPIAudioSourceAES},
        {"RCA",      morquilAPIAudioSourceRCA},
        {"DB25",     morquilAPIAudioSourceDB25}});
    // clang-format on
};

struct PixelFormats {
    using Value = _MorquilAPIPixelFormat;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"YCbCr422", morquilAPIPixelFormat422},
        {"YCbCr444", morquilAPIPixelFormat444YCbCr},
        {"RGB444",   morquilAPIPixelFormat444RGB}});
    // clang-format on
};

struct AspectRatios {
    using Value = _MorquilAPIAspectRatio;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Anamorphic", morquilAPIAspectRatioAnamorphic},
        {"14x9",       morquilAPIAspectRatio14x9},
        {"LetterBox",  morquilAPIAspectRatioLetterBox},
        {"CentreCut",  morquilAPIAspectRatioCentreCut},
        {"Smart",      morquilAPIAspectRatioSmart}});
    // clang-format on
};

struct PCIeModes {
    using Value = _MorquilAPIPCIeMode;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"None",     morquilAPIPCIeNone},
        {"Capture",  morquilAPIPCIeCapture},
        {"Playback", morquilAPIPCIePlayback}});
    // clang-format on
};

struct DemuxModes {
    using Value = _MorquilAPIDemuxMode;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"SingleLink", morquilAPIDemuxSingleLink},
        {"DualLink",   morquilAPIDemuxDualLink},
        {"QuadLink",   morquilAPIDemuxQuadLink}});
    // clang-format on
};

struct SdiLevels {
    using Value = _MorquilAPISDIMode;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"LevelA", morquilAPISDIModeLevelA},
        {"LevelB", morquilAPISDIModeLevelB}});
    // clang-format on
};

struct QuadSdiOutputs {
    using Value = _MorquilAPIQuadSDIOutput;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"QuadLink",    morquilAPIQuadSDIOutputLink},
        {"QuadHDSplit", morquilAPIQuadSDIOutputHDSplit}});
    // clang-format on
};

struct OutputOptions {
    using Value = _MorquilAPIOutputOption;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Input",  morquilAPIOutputOptionInput},
        {"Black",  morquilAPIOutputOptionBlack},
        {"Still",  morquilAPIOutputOptionStill},
        {"Freeze", morquilAPIOutputOptionFreeze}});
    // clang-format on
};

struct StillFrameActions {
    using Value = _MorquilAPIStillFrameAction;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"Delete",  morquilAPIStillFrameDelete},
        {"Capture", morquilAPIStillFrameCapture},
        {"Preview", morquilAPIStillFramePreview}});
    // clang-format on
};

struct TimecodePresence {
    using Value = _MorquilAPITimecodePresent;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"None",     morquilAPITimecodeNone},
        {"Detected", morquilAPITimecodeDetected}});
    // clang-format on
};

struct ClosedCaptionPresence {
    using Value = _MorquilAPIClosedCaptionPresent;
    // clang-format off
    static constexpr NameTable words = WordsOf<Value>({
        {"None",     morquilAPIClosedCaptionNone},
        {"Detected", morquilAPIClosedCaptionDetected}});
    // clang-format on
};

}  // namespace Morquil
