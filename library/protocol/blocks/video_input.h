#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// What the input can be set to.
struct VideoInputAvailabilityChangeSet {
    SetField<VideoSources> videoSources;
    SetField<AudioSources> audioSources;
    SetField<PixelFormats> videoPixelFormats;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO INPUT AVAILABILITY", .unknownKeyText = "Unknown video input availability line \"%s\"\n"},
        Key{"Video sources",       &VideoInputAvailabilityChangeSet::videoSources,      WordList<VideoSources>{}}.Needed(),
        Key{"Audio sources",       &VideoInputAvailabilityChangeSet::audioSources,      WordList<AudioSources>{}}.Needed(),
        Key{"Video pixel formats", &VideoInputAvailabilityChangeSet::videoPixelFormats, WordList<PixelFormats>{}}};
    // clang-format on
};

/// The input settings, and what the device detects there.
struct VideoInputChangeSet {
    using Offers = VideoInputAvailabilityChangeSet;

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
        Key{"Auto detection enabled",    &VideoInputChangeSet::autoDetectionEnabled,    YesNo{}}.Needed(),
        Key{"Auto detection prefer PsF", &VideoInputChangeSet::autoDetectionPreferPsF,  YesNo{}}.Needed(),
        Key{"Video source",              &VideoInputChangeSet::videoSource,             WordOf<VideoSources>{"Received invalid Video Input %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::videoSources),
        Key{"Video mode",                &VideoInputChangeSet::videoMode,               WordOf<VideoModes>{"Received invalid Video Input %s string \"%s\"\n"}}.NeededWhile(&VideoInputChangeSet::signalPresent),
        Key{"Audio source",              &VideoInputChangeSet::audioSource,             WordOf<AudioSources>{"Received invalid %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::audioSources),
        Key{"Signal present",            &VideoInputChangeSet::signalPresent,           YesNo{}}.Needed().Observed(),
        // Firmware adds new words for these two; they are not an error.
        Key{"Timecode present",          &VideoInputChangeSet::timecodePresent,         WordOf<TimecodePresence>{}}.Needed().Observed(),
        Key{"Closed captioning present", &VideoInputChangeSet::closedCaptioningPresent, WordOf<ClosedCaptionPresence>{}}.Needed().Observed(),
        Key{"Wide SD aspect",            &VideoInputChangeSet::wideSDAspect,            YesNo{}}.Needed(),
        Key{"HDMI 3D Full",              &VideoInputChangeSet::hdmi3DFull,              YesNo{}}.Needed(),
        Key{"Optical module present",    &VideoInputChangeSet::opticalModulePresent,    YesNo{}}.Needed().Observed(),
        Key{"Video pixel format",        &VideoInputChangeSet::videoPixelFormat,        WordOf<PixelFormats>{"Received invalid Video Packing Input %s string \"%s\"\n"}}.NeededWhile(&VideoInputChangeSet::signalPresent).LimitedBy(&Offers::videoPixelFormats),
        Key{"PCIe mode",                 &VideoInputChangeSet::pcieMode,                WordOf<PCIeModes>{"Received invalid PCIe Mode %s string \"%s\"\n"}}.Needed()};
    // clang-format on
};

using VideoInputMessage = TextProtocolMessage<VideoInputChangeSet>;
using VideoInputAvailabilityMessage = TextProtocolMessage<VideoInputAvailabilityChangeSet>;

}  // namespace Morquil
