#include "simulator/offers/offers.h"

#include <cstddef>
#include <string_view>

#include "simulator/offers/mode_sizes.h"

namespace Morquil::Simulator {

namespace {

constexpr std::size_t modeCount = VideoModes::words.Size();

const VideoModeDetails& Details(std::size_t mode) {
    return VideoModes::rows[mode].details;
}

/// Whether the rate is the nominal rate times 1000/1001, as 29.97 is.
bool IsFractional(const VideoModeDetails& mode) {
    return mode.frameDuration == 1001;
}

/// Whether a second holds a whole number of `rate` / 1000 frames, with 29.97 rounded to 30.
bool CountsIn(const VideoModeDetails& mode, std::int32_t rate) {
    return mode.timeScale % rate == 0;
}

/// 25 goes with 50; 24 goes with 30 and 60; the fractional rates go with each other.
bool RatesBelongTogether(const VideoModeDetails& from, const VideoModeDetails& to) {
    return IsFractional(from) == IsFractional(to) && CountsIn(from, 25000) == CountsIn(to, 25000);
}

/// A list of words cannot contain words that have a space in them.
bool FitsIntoList(std::size_t mode) {
    return VideoModes::words[mode].find(' ') == std::string_view::npos;
}

template <class Visit>
void ForEachPairOfModes(Visit visit) {
    for (std::size_t from = 0; from < modeCount; ++from) {
        for (std::size_t to = 0; to < modeCount; ++to) {
            visit(from, to);
        }
    }
}

}  // namespace

SupportedConversionsChangeSet OfferedConversions() {
    SupportedConversionsChangeSet offered;
    ForEachPairOfModes([&](std::size_t from, std::size_t to) {
        if (!RatesBelongTogether(Details(from), Details(to))) {
            return;
        }
        offered.aspectRatio.Add(from, to, morquilAPIAspectRatioAnamorphic);
        if (IsStandardDefinition(Details(from)) != IsStandardDefinition(Details(to))) {
            for (std::size_t ratio = 0; ratio < AspectRatios::words.Size(); ++ratio) {
                offered.aspectRatio.Add(from, to, ratio);
            }
        }
    });
    return offered;
}

GenlockAvailabilityChangeSet OfferedReferenceOffsets() {
    GenlockAvailabilityChangeSet offered;
    for (std::size_t mode = 0; mode < modeCount; ++mode) {
        const std::int32_t lines = Details(mode).height / 2;
        const std::int32_t pixels = Details(mode).width / 2;
        offered.lineOffsetRange[mode].Set({-lines, lines});
        offered.pixelOffsetRange[mode].Set({-pixels, pixels});
    }
    return offered;
}

AncillaryDataAvailabilityChangeSet OfferedDropFrameModes() {
    AncillaryDataAvailabilityChangeSet offered;
    for (std::size_t mode = 0; mode < modeCount; ++mode) {
        auto& modes = offered.timecodeDropFrameModes[mode];
        modes.Add(morquilAPITimecodeDropFrameModeAuto);
        modes.Add(morquilAPITimecodeDropFrameModeNDF);
        if (IsFractional(Details(mode)) && CountsIn(Details(mode), 30000)) {
            modes.Add(morquilAPITimecodeDropFrameModeDF);
        }
    }
    return offered;
}

Mode3DAvailabilityChangeSet Offered3DModes() {
    Mode3DAvailabilityChangeSet offered;
    ForEachPairOfModes([&](std::size_t from, std::size_t to) {
        const bool sameHeight = Details(from).height == Details(to).height;
        const bool highDefinition = Details(from).height == 720 || Details(from).height == 1080;
        if (sameHeight && highDefinition && FitsIntoList(to) && RatesBelongTogether(Details(from), Details(to))) {
            offered.output[from].Add(to);
        }
    });
    return offered;
}

VideoAdvancedAvailabilityChangeSet OfferedProcessingModes() {
    VideoAdvancedAvailabilityChangeSet offered;
    offered.availableProcessingModes.Add(morquilAPIProcModeNormal);
    offered.availableProcessingModes.Add(morquilAPIProcModeSimple);
    return offered;
}

}  // namespace Morquil::Simulator
