#pragma once

#include "protocol/block.h"
#include "protocol/message.h"

namespace Morquil {

/// What the device does with its input, and what it finds there.
struct VideoInputChangeSet {
    Field<bool> autoDetectionEnabled;
    Field<bool> autoDetectionPreferPsF;
    WordField<VideoSources> videoSource;
    WordField<VideoModes> videoMode;
    WordField<AudioSources> audioSource;
    Field<bool> signalPresent;
    WordField<TimecodePresence> timecodePresent;
    WordField<ClosedCaptionPresence> closedCaptioningPresent;
    Field<bool> wideSDAspect;
    Field<bool> hdmi3DFull;
    Field<bool> opticalModulePresent;
    WordField<PixelFormats> videoPixelFormat;
    WordField<PCIeModes> pcieMode;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO INPUT", .unknownKeyText = "Unknown video input line \"%s\"\n"},
        Key{"Auto detection enabled",    &VideoInputChangeSet::autoDetectionEnabled,    YesNo{}},
        Key{"Auto detection prefer PsF", &VideoInputChangeSet::autoDetectionPreferPsF,  YesNo{}},
        Key{"Video source",              &VideoInputChangeSet::videoSource,             WordOf<VideoSources>{"Received invalid Video Input %s string \"%s\"\n"}},
        Key{"Video mode",                &VideoInputChangeSet::videoMode,               WordOf<VideoModes>{"Received invalid Video Input %s string \"%s\"\n"}},
        Key{"Audio source",              &VideoInputChangeSet::audioSource,             WordOf<AudioSources>{"Received invalid %s string \"%s\"\n"}},
        Key{"Signal present",            &VideoInputChangeSet::signalPresent,           YesNo{}},
        // Firmware invents new words for these two; they are no error.
        Key{"Timecode present",          &VideoInputChangeSet::timecodePresent,         WordOf<TimecodePresence>{}},
        Key{"Closed captioning present", &VideoInputChangeSet::closedCaptioningPresent, WordOf<ClosedCaptionPresence>{}},
        Key{"Wide SD aspect",            &VideoInputChangeSet::wideSDAspect,            YesNo{}},
        Key{"HDMI 3D Full",              &VideoInputChangeSet::hdmi3DFull,              YesNo{}},
        Key{"Optical module present",    &VideoInputChangeSet::opticalModulePresent,    YesNo{}},
        Key{"Video pixel format",        &VideoInputChangeSet::videoPixelFormat,        WordOf<PixelFormats>{"Received invalid Video Packing Input %s string \"%s\"\n"}},
        Key{"PCIe mode",                 &VideoInputChangeSet::pcieMode,                WordOf<PCIeModes>{"Received invalid PCIe Mode %s string \"%s\"\n"}}};
    // clang-format on
};

/// What the input can be set to.
struct VideoInputAvailabilityChangeSet {
    SetField<VideoSources> videoSources;
    SetField<AudioSources> audioSources;
    SetField<PixelFormats> videoPixelFormats;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO INPUT AVAILABILITY", .unknownKeyText = "Unknown video input availability line \"%s\"\n"},
        Key{"Video sources",       &VideoInputAvailabilityChangeSet::videoSources,      WordList<VideoSources>{}},
        Key{"Audio sources",       &VideoInputAvailabilityChangeSet::audioSources,      WordList<AudioSources>{}},
        Key{"Video pixel formats", &VideoInputAvailabilityChangeSet::videoPixelFormats, WordList<PixelFormats>{}}};
    // clang-format on
};

using VideoInputMessage = TextProtocolMessage<VideoInputChangeSet>;
using VideoInputAvailabilityMessage = TextProtocolMessage<VideoInputAvailabilityChangeSet>;

}  // namespace Morquil
