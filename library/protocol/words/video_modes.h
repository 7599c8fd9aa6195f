// Video modes and frame rates.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "MorquilAPI.h"
#include "protocol/text/name_table.h"
#include "protocol/words/word.h"

namespace Morquil {

struct VideoModeDetails {
    std::int32_t width;           // active pixels
    std::int32_t height;          // active lines
    std::int32_t frameRateIndex;  // row of FrameRates
    std::int32_t timeScale;       // frames per second = timeScale / frameDuration
    std::int32_t frameDuration;
    std::int32_t scanCode;  // carried as a number that nothing here interprets
};

struct VideoModes {
    using Value = _MorquilAPIVideoMode;

    struct Row {
        const char* word;
        Value value;
        VideoModeDetails details;
    };

    // All interlaced rows except "1080i60" pair the field rate's index with the frame rate, "525p29.97 NTSC" carries
    // the numbers of a 60 Hz mode, and "2160p60" comes before the slower two: devices and hosts rely on all three.
    // clang-format off
    static constexpr Row rows[] = {
        {"525i59.94 NTSC",  morquilAPIVideoModeNTSC,          { 720,  486, 6, 30000, 1001, 1}},
        {"625i50 PAL",      morquilAPIVideoModePAL,           { 720,  576, 5, 25000, 1000, 1}},
        {"525p29.97 NTSC",  morquilAPIVideoModeNTSCp,         { 720,  486, 7, 60000, 1001, 3}},
        {"720p59.94",       morquilAPIVideoMode720p5994,      {1280,  720, 6, 60000, 1001, 2}},
        {"720p50",          morquilAPIVideoMode720p50,        {1280,  720, 5, 50000, 1000, 2}},
        {"720p60",          morquilAPIVideoMode720p60,        {1280,  720, 7, 60000, 1000, 2}},
        {"1080i59.94",      morquilAPIVideoMode1080i5994,     {1920, 1080, 6, 30000, 1001, 0}},
        {"1080i50",         morquilAPIVideoMode1080i50,       {1920, 1080, 5, 25000, 1000, 0}},
        {"1080i60",         morquilAPIVideoMode1080i60,       {1920, 1080, 7, 30000, 1000, 0}},
        {"1080p30",         morquilAPIVideoMode1080p30,       {1920, 1080, 4, 30000, 1000, 2}},
        {"1080p29.97",      morquilAPIVideoMode1080p2997,     {1920, 1080, 3, 30000, 1001, 2}},
        {"1080p25",         morquilAPIVideoMode1080p25,       {1920, 1080, 2, 25000, 1000, 2}},
        {"1080p24",         morquilAPIVideoMode1080p24,       {1920, 1080, 1, 24000, 1000, 2}},
        {"1080p23.98",      morquilAPIVideoMode1080p2398,     {1920, 1080, 0, 24000, 1001, 2}},
        {"1080p59.94",      morquilAPIVideoMode1080p5994,     {1920, 1080, 6, 60000, 1001, 2}},
        {"1080p50",         morquilAPIVideoMode1080p50,       {1920, 1080, 5, 50000, 1000, 2}},
        {"1080p60",         morquilAPIVideoMode1080p60,       {1920, 1080, 7, 60000, 1000, 2}},
        {"1080PsF23.98",    morquilAPIVideoMode1080psf2398,   {1920, 1080, 0, 24000, 1001, 6}},
        {"1080PsF24",       morquilAPIVideoMode1080psf24,     {1920, 1080, 1, 24000, 1000, 6}},
        {"1080PsF25",       morquilAPIVideoMode1080psf25,     {1920, 1080, 2, 25000, 1000, 6}},
        {"1080PsF29.97",    morquilAPIVideoMode1080psf2997,   {1920, 1080, 3, 30000, 1001, 6}},
        {"1080PsF30",       morquilAPIVideoMode1080psf30,     {1920, 1080, 4, 30000, 1000, 6}},
        {"2K DCI 23.98p",   morquilAPIVideoMode2K1080p2398,   {2048, 1080, 0, 24000, 1001, 2}},
        {"2K DCI 24p",      morquilAPIVideoMode2K1080p24,     {2048, 1080, 1, 24000, 1000, 2}},
        {"2K DCI 23.98PsF", morquilAPIVideoMode2K1080psf2398, {2048, 1080, 0, 24000, 1001, 6}},
        {"2K DCI 24PsF",    morquilAPIVideoMode2K1080psf24,   {2048, 1080, 1, 24000, 1000, 6}},
        {"2160p23.98",      morquilAPIVideoModeUHDp2398,      {3840, 2160, 0, 24000, 1001, 2}},
        {"2160p24",         morquilAPIVideoModeUHDp24,        {3840, 2160, 1, 24000, 1000, 2}},
        {"2160p25",         morquilAPIVideoModeUHDp25,        {3840, 2160, 2, 25000, 1000, 2}},
        {"2160p29.97",      morquilAPIVideoModeUHDp2997,      {3840, 2160, 3, 30000, 1001, 2}},
        {"2160p30",         morquilAPIVideoModeUHDp30,        {3840, 2160, 4, 30000, 1000, 2}},
        {"2160p60",         morquilAPIVideoModeUHDp60,        {3840, 2160, 7, 60000, 1000, 2}},
        {"2160p59.94",      morquilAPIVideoModeUHDp5994,      {3840, 2160, 6, 60000, 1001, 2}},
        {"2160p50",         morquilAPIVideoModeUHDp50,        {3840, 2160, 5, 50000, 1000, 2}}};
    // clang-format on

    static constexpr NameTable words = WordsFromRows(rows);

    /// The other columns of a word's row; null beyond the table.
    static constexpr const VideoModeDetails* Details(std::size_t index) {
        return index < words.Size() ? &rows[index].details : nullptr;
    }
};

/// No block carries these words; a video mode's frameRateIndex selects one.
struct FrameRates {
    using Value = std::int32_t;
    static constexpr NameTable words{"23.98 FPS", "24 FPS", "25 FPS",    "29.97 FPS",
                                     "30 FPS",    "50 FPS", "59.94 FPS", "60 FPS"};

    /// Frames of a timecode count from 0; at 50 and 60 frames per second a timecode counts every other frame.
    static constexpr std::array<std::int32_t, 8> highestTimecodeFrame{23, 23, 24, 29, 29, 24, 29, 29};
};

}  // namespace Morquil
