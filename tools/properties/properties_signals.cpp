// The device's inputs and outputs.
#include "properties/property_rows.h"
#include "properties/property_table.h"

namespace Morquil::Properties {
namespace {

using morquil::AspectRatio;
using morquil::VideoMode;

bool IsConverted(const morquil::Device& device, VideoMode input, VideoMode output) {
    for (const auto& ratio : morquil::Words<AspectRatio>::all) {
        if (device.IsConversionSupported(input, output, ratio.value)) {
            return true;
        }
    }
    return false;
}

struct OutputModes {
    static constexpr std::string_view call = MethodFacts<&morquil::DeviceCalls::IsConversionSupported>::name;
    static constexpr std::array follows{InputMode::property};
    static Offer Of(const morquil::Device& device) {
        const std::optional<VideoMode> input = InputMode::Of(device);
        return input ? WordsWith<VideoMode>([&](VideoMode output) { return IsConverted(device, *input, output); })
                     : Offer();
    }
};

// The feature's own answer is always yes.
struct OutputRatios {
    static constexpr std::string_view call = MethodFacts<&morquil::DeviceCalls::IsConversionSupported>::name;
    static constexpr std::array follows{InputMode::property, OutputMode::property};
    static Offer Of(const morquil::Device& device) {
        const std::optional<VideoMode> input = InputMode::Of(device);
        const std::optional<VideoMode> output = OutputMode::Of(device);
        if (!input || !output) {
            return {};
        }
        return WordsWith<AspectRatio>(
            [&](AspectRatio ratio) { return device.IsConversionSupported(*input, *output, ratio); });
    }
};

void AddInput(std::vector<Property>& all) {
    using F = morquil::features::InputConfiguration;
    FeatureRows<F> rows(all, "input");
    // clang-format off
    rows.Setting<&F::GetVideoSource, &F::SetVideoSource, &F::IsVideoSourceAvailable>("video-source", "Video input connector").ChangingModes();
    rows.Setting<&F::GetVideoMode, &F::SetVideoMode>("video-mode", "Video format of the input").ChangingModes();
    rows.Setting<&F::GetAudioSource, &F::SetAudioSource, &F::IsAudioSourceAvailable>("audio-source", "Audio input");
    rows.Setting<&F::GetAutoDetectionEnabled, &F::SetAutoDetectionEnabled>("auto-detection", "Whether the input format is detected automatically").ChangingModes();
    rows.Setting<&F::GetAutoDetectionPreferPsf, &F::SetAutoDetectionPreferPsf>("prefer-psf", "Whether detection treats interlaced signals as PsF");
    rows.Setting<&F::GetHdmi3DFull, &F::SetHdmi3DFull>("hdmi-3d-full", "Whether HDMI carries full 3D frames");
    rows.Setting<&F::GetWideSDAspectEnabled, &F::SetWideSDAspectEnabled>("wide-sd-aspect", "Whether SD input is 16:9");
    rows.Reading<&F::GetSignalPresent>("signal-present", "Whether the input has a signal");
    rows.Reading<&F::GetPixelFormat>("pixel-format", "Colour sampling of the video");
    rows.Reading<&F::GetTimecodePresent>("timecode-present", "Timecode found in the input signal");
    rows.Reading<&F::GetClosedCaptionPresent>("closed-caption-present", "Closed captions found in the input signal");
    rows.Reading<&F::GetOpticalModulePresent>("optical-module-present", "Whether an optical module is fitted");
    rows.Reading<&F::GetPCIeMode>("pcie-mode", "Use of the PCIe connection");
    // clang-format on
}

void AddOutput(std::vector<Property>& all) {
    using F = morquil::features::OutputConfiguration;
    FeatureRows<F> rows(all, "output");
    // clang-format off
    rows.Setting<&F::GetVideoMode, &F::SetVideoMode, OutputModes{}>("video-mode", "Video format of the output").ChangingModes();
    rows.Setting<&F::GetAspectRatio, &F::SetAspectRatio, OutputRatios{}>("aspect-ratio", "Aspect ratio conversion");
    rows.Setting<&F::GetPixelFormat, &F::SetPixelFormat, &F::IsPixelFormatAvailable>("pixel-format", "Colour sampling of the video");
    rows.Setting<&F::GetDualLinkEnabled, &F::SetDualLinkEnabled, &F::IsDemuxModeAvailable>("demux-mode", "Number of SDI links");
    rows.Setting<&F::GetSDIMode, &F::SetSDIMode, &F::IsSDIModeAvailable>("sdi-mode", "3G-SDI mapping: level A or B");
    rows.Setting<&F::GetQuadSDIOutput, &F::SetQuadSDIOutput, &F::IsQuadSDIOutputAvailable>("quad-sdi-output", "Mode of the four SDI outputs");
    rows.Setting<&F::GetQuadAncillaryReplication, &F::SetQuadAncillaryReplication>("quad-ancillary-replication", "Whether ancillary data is repeated on all four links");
    rows.Setting<&F::GetAnalogOutputMode, &F::SetAnalogOutputMode, &F::IsAnalogOutputModeAvailable>("analog-output-mode", "Signal of the analog output");
    rows.Setting<&F::GetHDMIOutput, &F::SetHDMIOutput, &F::IsHDMIOutputAvailable>("hdmi-output", "Colour sampling of the HDMI output");
    rows.Setting<&F::GetOutputOption, &F::SetOutputOption, &F::IsOutputOptionAvailable>("option", "What is output: the input, black or the still frame");
    rows.Setting<&F::GetTransitionSetting, &F::SetTransitionSetting, &F::GetTransitionSettingRange>("transition-setting", "Speed of transitions");
    rows.Command<&F::SetStillFrameAction>("still-frame-action", "Captures, previews or deletes the still frame");
    rows.Reading<&F::GetStillFramePresent>("still-frame-present", "Whether a still frame is captured");
    rows.Reading<&F::GetStillFrameLoadComplete>("still-frame-load-complete", "Whether the still frame has been loaded");
    rows.Reading<&F::GetStillFrameStoreComplete>("still-frame-store-complete", "Whether the still frame has been stored");
    rows.Reading<&F::GetStillFramePreviewComplete>("still-frame-preview-complete", "Whether the still frame preview has ended");
    // clang-format on
}

void AddReference(std::vector<Property>& all) {
    using F = morquil::features::Reference;
    FeatureRows<F> rows(all, "reference");
    // clang-format off
    rows.Setting<&F::GetType, &F::SetType>("type", "Genlock source of the output");
    rows.Setting<&F::GetGenRef, &F::SetGenRef, &F::IsGenRefAvailable>("gen-ref", "Type of reference signal");
    rows.Setting<&F::GetLineOffset, &F::SetLineOffset, RangeOfOutputMode<&F::GetLineOffsetRange>{}>("line-offset", "Vertical output timing relative to the reference").In(Unit::Lines);
    rows.Setting<&F::GetPixelOffset, &F::SetPixelOffset, RangeOfOutputMode<&F::GetPixelOffsetRange>{}>("pixel-offset", "Horizontal output timing relative to the reference").In(Unit::Pixels);
    rows.Reading<&F::GetSignalLocked>("signal-locked", "Whether the reference is locked");
    // clang-format on
}

}  // namespace

void AddSignalRows(std::vector<Property>& all) {
    AddInput(all);
    AddOutput(all);
    AddReference(all);
}

}  // namespace Morquil::Properties
