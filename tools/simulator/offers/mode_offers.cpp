#include "simulator/offers/mode_offers.h"

#include <cmath>
#include <initializer_list>

#include "simulator/offers/mode_sizes.h"

namespace Morquil::Simulator {

namespace {

/// The input and output mode of a conversion.
struct Conversion {
    const VideoModeDetails& from;
    const VideoModeDetails& to;
};

bool IsUltraHighDefinition(const VideoModeDetails& mode) {
    return mode.height > 1080;
}

/// Whether the picture needs more than one HD link carries: 1080 lines at more than 30 frames.
bool NeedsTwiceTheRate(const VideoModeDetails& mode) {
    return mode.height >= 1080 && mode.timeScale > 30 * mode.frameDuration;
}

/// Whether the number of pictures per second changes. The two fields of a frame count as two pictures.
bool ChangesPictureRate(const Conversion& conversion) {
    return conversion.from.frameRateIndex != conversion.to.frameRateIndex;
}

/// Whether the number of whole frames per second changes.
bool ChangesFrameRate(const Conversion& conversion) {
    return conversion.from.timeScale * conversion.to.frameDuration !=
           conversion.to.timeScale * conversion.from.frameDuration;
}

bool ChangesScan(const Conversion& conversion) {
    return conversion.from.scanCode != conversion.to.scanCode;
}

template <class Vocabulary>
void Offer(SetField<Vocabulary>& list, std::initializer_list<typename Vocabulary::Value> words) {
    list.Clear();
    for (const auto word : words) {
        list.Add(static_cast<std::size_t>(word));
    }
}

/// What the output connectors can carry in this mode.
void OfferLinks(VideoOutputAvailabilityChangeSet& offers, const VideoModeDetails& output) {
    if (IsUltraHighDefinition(output)) {
        Offer(offers.videoDemuxModes, {morquilAPIDemuxQuadLink});
    } else if (IsStandardDefinition(output)) {
        Offer(offers.videoDemuxModes, {morquilAPIDemuxSingleLink});
    } else {
        Offer(offers.videoDemuxModes, {morquilAPIDemuxSingleLink, morquilAPIDemuxDualLink});
    }
    if (NeedsTwiceTheRate(output) || IsUltraHighDefinition(output)) {
        Offer(offers.outputSdiModes, {morquilAPISDIModeLevelA, morquilAPISDIModeLevelB});
    } else {
        Offer(offers.outputSdiModes, {morquilAPISDIModeLevelA});
    }
}

/// Four links carry every sampling. One link carries full colour resolution only for slow HD.
void OfferPixelFormats(VideoOutputAvailabilityChangeSet& offers, const VideoModeDetails& output) {
    const bool fast = NeedsTwiceTheRate(output) && !IsUltraHighDefinition(output);
    if (fast || IsStandardDefinition(output)) {
        Offer(offers.videoPixelFormats, {morquilAPIPixelFormat422});
    } else {
        Offer(offers.videoPixelFormats,
              {morquilAPIPixelFormat422, morquilAPIPixelFormat444YCbCr, morquilAPIPixelFormat444RGB});
    }
}

/// Noise is distinguished from motion by comparing pictures, which must happen before new pictures are interpolated.
/// The source of the pictures matters only to a converter that takes frames apart.
void OfferProcessing(DeviceBlocks& device, const Conversion& conversion) {
    device.Of<NoiseReductionAvailabilityChangeSet>().noiseReductionAvailable.Set(!ChangesPictureRate(conversion));
    auto& advanced = device.Of<VideoAdvancedAvailabilityChangeSet>();
    const bool changesRate = ChangesFrameRate(conversion);
    advanced.frcApertureAvailable.Set(changesRate);
    advanced.frcApertureRange.Set({0, changesRate ? static_cast<std::int32_t>(FrcApertures::words.Size()) - 1 : 0});
    if (changesRate || ChangesScan(conversion)) {
        Offer(advanced.availableSourceTypes,
              {morquilAPISourceTypeAuto, morquilAPISourceTypeVideo, morquilAPISourceTypeFilm});
    } else {
        Offer(advanced.availableSourceTypes, {morquilAPISourceTypeAuto});
    }
}

/// Test patterns move in whole lines per frame, faster the more lines there are. Standard definition is too coarse.
void OfferMotion(TestPatternAvailabilityChangeSet& offers, const VideoModeDetails& output) {
    constexpr std::int32_t linesPerStep = 135;
    const bool moves = !IsStandardDefinition(output);
    const std::int32_t fastest = moves ? output.height / linesPerStep : 0;
    offers.motion.Set(moves);
    offers.motionRange.Set({-fastest, fastest});
}

/// A range whose limits are still exact when written with few decimals.
Range<double> UpTo(double limit) {
    constexpr double steps = 1000;
    const double rounded = std::floor(limit * steps) / steps;
    return {-rounded, rounded};
}

/// A picture can be moved until part of the frame is empty, and cropped by part of the frame. Positions count in widths
/// and heights of the input picture.
void OfferGeometry(GeometryRangeFields& offers, const Conversion& conversion, double moved, std::int32_t cutDivisor) {
    offers.posXRange.Set(UpTo(moved * conversion.to.width / conversion.from.width));
    offers.posYRange.Set(UpTo(moved * conversion.to.height / conversion.from.height));
    offers.trimXRange.Set({0, static_cast<std::uint32_t>(conversion.to.width / cutDivisor)});
    offers.trimYRange.Set({0, static_cast<std::uint32_t>(conversion.to.height / cutDivisor)});
}

/// Captions use the same lines as timecode.
void OfferCaptionLines(AncillaryDataAvailabilityChangeSet& offers, const Conversion& conversion) {
    const auto lines = [&](const VideoModeDetails& mode) {
        return offers.timecodeLineRange[FrameHeightSlot(static_cast<std::uint32_t>(mode.height))];
    };
    offers.ccInputLineRange = lines(conversion.from);
    offers.ccOutputLineRange = lines(conversion.to);
}

}  // namespace

void OfferForModes(DeviceBlocks& device) {
    const Conversion conversion{VideoModes::rows[InputMode(device)].details,
                                VideoModes::rows[OutputMode(device)].details};
    OfferLinks(device.Of<VideoOutputAvailabilityChangeSet>(), conversion.to);
    OfferPixelFormats(device.Of<VideoOutputAvailabilityChangeSet>(), conversion.to);
    OfferProcessing(device, conversion);
    OfferMotion(device.Of<TestPatternAvailabilityChangeSet>(), conversion.to);
    OfferGeometry(device.Of<VariableAspectRatioAvailabilityChangeSet>(), conversion, 1.0, 2);
    OfferGeometry(device.Of<AlignAvailabilityBlock>(), conversion, 0.5, 4);
    OfferCaptionLines(device.Of<AncillaryDataAvailabilityChangeSet>(), conversion);
}

}  // namespace Morquil::Simulator
