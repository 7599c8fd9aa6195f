#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// What the output can be set to.
struct VideoOutputAvailabilityChangeSet {
    SetField<DemuxModes> videoDemuxModes;
    SetField<PixelFormats> videoPixelFormats;
    SetField<SdiLevels> outputSdiModes;
    SetField<QuadSdiOutputs> quadSdiOutputs;
    /// The available analogue outputs.
    SetField<VideoSources> videoSources;
    SetField<OutputOptions> availableOutputOption;
    SetField<PixelFormats> hdmiOutputs;
    Field<Range<std::int32_t>> transitionSettingRange;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO OUTPUT AVAILABILITY", .unknownKeyText = "Unknown video output availability line \"%s\"\n"},
        Key{"Video demux modes",        &VideoOutputAvailabilityChangeSet::videoDemuxModes,        WordList<DemuxModes>{}}.Needed(),
        Key{"Video pixel formats",      &VideoOutputAvailabilityChangeSet::videoPixelFormats,      WordList<PixelFormats>{}}.Needed(),
        Key{"Output sdi modes",         &VideoOutputAvailabilityChangeSet::outputSdiModes,         WordList<SdiLevels>{}}.Needed(),
        Key{"Quad sdi outputs",         &VideoOutputAvailabilityChangeSet::quadSdiOutputs,         WordList<QuadSdiOutputs>{}}.Needed(),
        Key{"Video sources",            &VideoOutputAvailabilityChangeSet::videoSources,           WordList<VideoSources>{}},
        Key{"Available output option",  &VideoOutputAvailabilityChangeSet::availableOutputOption,  WordList<OutputOptions>{}}.Needed(),
        Key{"HDMI outputs",             &VideoOutputAvailabilityChangeSet::hdmiOutputs,            WordList<PixelFormats>{}}.Needed(),
        Key{"Transition setting range", &VideoOutputAvailabilityChangeSet::transitionSettingRange, SignedRange{}}.Needed()};
    // clang-format on
};

/// What the device outputs, and its still store.
struct VideoOutputChangeSet {
    using Offers = VideoOutputAvailabilityChangeSet;

    /// No transition setting: all bits set, which is never written.
    static constexpr std::int32_t noTransitionSetting = -1;

    WordField<VideoModes> videoMode;
    WordField<AspectRatios> aspectRatio;
    WordField<DemuxModes> videoDemuxMode;
    WordField<SdiLevels> outputSdiMode;
    WordField<QuadSdiOutputs> quadSdiOutput;
    Field<bool> quadAncillaryReplication;
    WordField<PixelFormats> videoPixelFormat;
    WordField<VideoSources> analogOutput;
    WordField<OutputOptions> outputOption;
    ReservedField<std::int32_t, noTransitionSetting> transitionSetting;
    WordField<StillFrameActions> stillFrameAction;
    Field<bool> stillFramePresent;
    Field<bool> stillLoadComplete;
    Field<bool> stillStoreComplete;
    Field<bool> stillPreviewComplete;
    WordField<PixelFormats> hdmiOutput;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "VIDEO OUTPUT", .unknownKeyText = "Unknown video output line \"%s\"\n", .bracketed = false},
        Key{"Video mode",                 &VideoOutputChangeSet::videoMode,                WordOf<VideoModes>{"Received invalid Video Output %s string \"%s\"\n"}}.Needed().LimitedBy(ConvertibleMode{}),
        Key{"Aspect ratio",               &VideoOutputChangeSet::aspectRatio,              WordOf<AspectRatios>{"Received unknown %s string \"%s\"\n"}}.Needed().LimitedBy(ConvertibleShape{}),
        Key{"Video demux mode",           &VideoOutputChangeSet::videoDemuxMode,           WordOf<DemuxModes>{"Received invalid De-multiplexed output %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::videoDemuxModes),
        Key{"Output sdi mode",            &VideoOutputChangeSet::outputSdiMode,            WordOf<SdiLevels>{"Received invalid SDI output mode %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::outputSdiModes),
        Key{"Quad sdi output",            &VideoOutputChangeSet::quadSdiOutput,            WordOf<QuadSdiOutputs>{"Received invalid Quad SDI output mode %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::quadSdiOutputs),
        Key{"Quad ancillary replication", &VideoOutputChangeSet::quadAncillaryReplication, YesNo{}},
        Key{"Video pixel format",         &VideoOutputChangeSet::videoPixelFormat,         WordOf<PixelFormats>{"Received invalid Video Packing Output %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::videoPixelFormats),
        Key{"Analog output",              &VideoOutputChangeSet::analogOutput,             WordOf<VideoSources>{"Received invalid Video Analog Output %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::videoSources),
        Key{"Output option",              &VideoOutputChangeSet::outputOption,             WordOf<OutputOptions>{"Failed to parse %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::availableOutputOption),
        Key{"Transition setting",         &VideoOutputChangeSet::transitionSetting,        Signed{}}.Needed().LimitedBy(&Offers::transitionSettingRange),
        Key{"Still frame action",         &VideoOutputChangeSet::stillFrameAction,         WordOf<StillFrameActions>{"Failed to parse %s string \"%s\"\n"}}.Command(),
        Key{"Still frame present",        &VideoOutputChangeSet::stillFramePresent,        YesNo{}}.Needed().Observed(),
        Key{"Still load complete",        &VideoOutputChangeSet::stillLoadComplete,        YesNo{}}.Needed().Observed(),
        Key{"Still store complete",       &VideoOutputChangeSet::stillStoreComplete,       YesNo{}}.Needed().Observed(),
        Key{"Still preview complete",     &VideoOutputChangeSet::stillPreviewComplete,     YesNo{}}.Needed().Observed(),
        Key{"HDMI output",                &VideoOutputChangeSet::hdmiOutput,               WordOf<PixelFormats>{"Received invalid HDMI Output %s string \"%s\"\n"}}.Needed().LimitedBy(&Offers::hdmiOutputs)};
    // clang-format on
};

using VideoOutputMessage = TextProtocolMessage<VideoOutputChangeSet>;
using VideoOutputAvailabilityMessage = TextProtocolMessage<VideoOutputAvailabilityChangeSet>;

}  // namespace Morquil
