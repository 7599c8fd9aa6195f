// Which setting each offer limits. One line per pair.
#pragma once

#include <tuple>

#include "simulator/conversions.h"
#include "simulator/limits.h"

namespace Morquil::Simulator {

/// A block without limits of its own takes every value that can be written.
template <class Description>
struct LimitsOf {
    using Offers = Description;
    static constexpr auto rows = std::tuple<>();
};

std::size_t InputHeightSlot(const DeviceBlocks& device);
std::size_t OutputHeightSlot(const DeviceBlocks& device);

/// A preset above the range has no name; the one above that is the factory's and cannot be saved.
inline constexpr std::int32_t namelessPresets = 1;
inline constexpr std::int32_t recallablePresets = 2;

// clang-format off
template <>
struct LimitsOf<VideoInputChangeSet> {
    using Set = VideoInputChangeSet;
    using Offers = VideoInputAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::videoSource,      &Offers::videoSources},
        Limit{&Set::audioSource,      &Offers::audioSources},
        Limit{&Set::videoPixelFormat, &Offers::videoPixelFormats}};
};

template <>
struct LimitsOf<VideoOutputChangeSet> {
    using Set = VideoOutputChangeSet;
    using Offers = VideoOutputAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        ConvertibleMode{&Set::videoMode},
        ConvertibleShape{&Set::aspectRatio},
        Limit{&Set::videoDemuxMode,    &Offers::videoDemuxModes},
        Limit{&Set::outputSdiMode,     &Offers::outputSdiModes},
        Limit{&Set::quadSdiOutput,     &Offers::quadSdiOutputs},
        Limit{&Set::videoPixelFormat,  &Offers::videoPixelFormats},
        Limit{&Set::analogOutput,      &Offers::videoSources},
        Limit{&Set::outputOption,      &Offers::availableOutputOption},
        Limit{&Set::transitionSetting, &Offers::transitionSettingRange},
        Limit{&Set::hdmiOutput,        &Offers::hdmiOutputs}};
};

template <>
struct LimitsOf<VideoProcAmpChangeSet> {
    using Set = VideoProcAmpChangeSet;
    using Offers = VideoProcAmpAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::gain,       &Offers::gainRange},
        Limit{&Set::black,      &Offers::blackRange},
        Limit{&Set::saturation, &Offers::saturationRange},
        Limit{&Set::hue,        &Offers::hueRange},
        Limit{&Set::ry,         &Offers::ryRange},
        Limit{&Set::by,         &Offers::byRange},
        Limit{&Set::sharp,      &Offers::sharpRange}};
};

template <>
struct LimitsOf<VideoAdjustChangeSet> {
    using Set = VideoAdjustChangeSet;
    using Offers = VideoAdjustAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::red,            &Offers::redRange},
        Limit{&Set::green,          &Offers::greenRange},
        Limit{&Set::blue,           &Offers::blueRange},
        Limit{&Set::lumaLow,        &Offers::lumaLowRange},
        Limit{&Set::lumaHigh,       &Offers::lumaHighRange},
        Limit{&Set::chromaLow,      &Offers::chromaLowRange},
        Limit{&Set::chromaHigh,     &Offers::chromaHighRange},
        Limit{&Set::aspectFillLuma, &Offers::aspectFillLumaRange},
        Limit{&Set::aspectFillCb,   &Offers::aspectFillCbRange},
        Limit{&Set::aspectFillCr,   &Offers::aspectFillCrRange}};
};

template <>
struct LimitsOf<NoiseReductionChangeSet> {
    using Set = NoiseReductionChangeSet;
    using Offers = NoiseReductionAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::enabled, &Offers::noiseReductionAvailable},
        Limit{&Set::bias,    &Offers::biasRange}};
};

template <>
struct LimitsOf<TestPatternChangeSet> {
    using Set = TestPatternChangeSet;
    using Offers = TestPatternAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::output,         &Offers::availableTestPatterns},
        Limit{&Set::noSignal,       &Offers::availableTestPatterns},
        Limit{&Set::testTone,       &Offers::availableTestTones},
        Limit{&Set::motion,         &Offers::motion},
        Limit{&Set::horizontalRate, &Offers::motionRange},
        Limit{&Set::verticalRate,   &Offers::motionRange}};
};

template <>
struct LimitsOf<VideoAdvancedChangeSet> {
    using Set = VideoAdvancedChangeSet;
    using Offers = VideoAdvancedAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::sourceType,  &Offers::availableSourceTypes},
        Limit{&Set::frcAperture, &Offers::frcApertureRange},
        Limit{&Set::processing,  &Offers::availableProcessingModes}};
};

template <>
struct LimitsOf<AncillaryDataChangeSet> {
    using Set = AncillaryDataChangeSet;
    using Offers = AncillaryDataAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::timecodeMode,                 &Offers::timecodeModes},
        LimitPerSlot{&Set::timecodeInputLine,     &Offers::timecodeLineRange,      &InputHeightSlot},
        LimitPerSlot{&Set::timecodeOutputLine,    &Offers::timecodeLineRange,      &OutputHeightSlot},
        LimitPerSlot{&Set::timecodeDropFrameMode, &Offers::timecodeDropFrameModes, &OutputMode},
        Limit{&Set::timecodeSource,               &Offers::timecodeSources},
        Limit{&Set::timecodeLossMode,             &Offers::timecodeLossModes},
        TimeOfDay{&Set::timecodeGenerateValue},
        TimeOfDay{&Set::timecodeJamSyncValue},
        Limit{&Set::timecodeStartSource,          &Offers::timecodeStartSources},
        Limit{&Set::indexReaction,                &Offers::indexReactions},
        Limit{&Set::afdInsertType,                &Offers::afdInsertTypes},
        LimitPerSlot{&Set::afdOutputLine,         &Offers::afdOutputLineRange,     &OutputHeightSlot},
        Limit{&Set::ccInputLine,                  &Offers::ccInputLineRange},
        Limit{&Set::ccOutputLine,                 &Offers::ccOutputLineRange},
        Limit{&Set::ccService2Source,             &Offers::ccService2Sources},
        Limit{&Set::ccService1Language,           &Offers::ccServiceLanguages},
        Limit{&Set::ccService2Language,           &Offers::ccServiceLanguages}};
};

template <>
struct LimitsOf<GenlockChangeSet> {
    using Set = GenlockChangeSet;
    using Offers = GenlockAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::type,                &Offers::types},
        Limit{&Set::genReference,        &Offers::genReferences},
        Limit{&Set::genReference,        &Offers::genReferencesAvailable},
        LimitPerSlot{&Set::lineOffset,   &Offers::lineOffsetRange,  &OutputMode},
        LimitPerSlot{&Set::pixelOffset,  &Offers::pixelOffsetRange, &OutputMode}};
};

/// The two blocks of geometry have the same fields and the same kinds of ranges.
inline constexpr auto geometryLimits = std::tuple{
    Limit{&GeometryFields::sizeXLeft,  &GeometryRangeFields::sizeXRange},
    Limit{&GeometryFields::sizeXRight, &GeometryRangeFields::sizeXRange},
    Limit{&GeometryFields::sizeYLeft,  &GeometryRangeFields::sizeYRange},
    Limit{&GeometryFields::sizeYRight, &GeometryRangeFields::sizeYRange},
    Limit{&GeometryFields::posXLeft,   &GeometryRangeFields::posXRange},
    Limit{&GeometryFields::posXRight,  &GeometryRangeFields::posXRange},
    Limit{&GeometryFields::posYLeft,   &GeometryRangeFields::posYRange},
    Limit{&GeometryFields::posYRight,  &GeometryRangeFields::posYRange},
    Limit{&GeometryFields::trimXLeft,  &GeometryRangeFields::trimXRange},
    Limit{&GeometryFields::trimXRight, &GeometryRangeFields::trimXRange},
    Limit{&GeometryFields::trimYLeft,  &GeometryRangeFields::trimYRange},
    Limit{&GeometryFields::trimYRight, &GeometryRangeFields::trimYRange}};

template <>
struct LimitsOf<VariableAspectRatioChangeSet> {
    using Offers = VariableAspectRatioAvailabilityChangeSet;
    static constexpr auto rows = geometryLimits;
};

template <>
struct LimitsOf<AlignChangeSet> {
    using Offers = AlignAvailabilityBlock;
    static constexpr auto rows = geometryLimits;
};

template <>
struct LimitsOf<AudioChangeSet> {
    using Set = AudioChangeSet;
    using Offers = AudioAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::audioOut,            &Offers::audioSelections},
        Limit{&Set::audioEncode,         &Offers::audioSelections},
        Limit{&Set::audioInLevel,        &Offers::audioLevelRange},
        Limit{&Set::audioDDLevel,        &Offers::audioLevelRange},
        Limit{&Set::audioUserDelay,      &Offers::analogDelayRange},
        Limit{&Set::analogInputRefLevel, &Offers::analogInputRefLevelRange},
        // Decibels below full scale, as the metadata count them. Readers do not know the key that would offer them.
        FixedLimit{&Set::metadataDialogLevel, -31, -1}};
};

template <>
struct LimitsOf<Mode3DChangeSet> {
    using Set = Mode3DChangeSet;
    using Offers = Mode3DAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::intensity2D3D, &Offers::intensityRange2D3D},
        Limit{&Set::depth2D3D,     &Offers::depthRange2D3D},
        Limit{&Set::rollLeft,      &Offers::rollRange},
        Limit{&Set::rollRight,     &Offers::rollRange},
        Limit{&Set::tiltLeft,      &Offers::tiltRange},
        Limit{&Set::tiltRight,     &Offers::tiltRange},
        Limit{&Set::toeInLeft,     &Offers::toeInRange},
        Limit{&Set::toeInRight,    &Offers::toeInRange}};
};

template <>
struct LimitsOf<PresetChangeSet> {
    using Set = PresetChangeSet;
    using Offers = PresetAvailabilityChangeSet;
    static constexpr auto rows = std::tuple{
        Limit{&Set::save,   &Offers::presetRange, namelessPresets},
        Limit{&Set::recall, &Offers::presetRange, recallablePresets}};
};
// clang-format on

}  // namespace Morquil::Simulator
