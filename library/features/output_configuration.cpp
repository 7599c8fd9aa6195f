#include "features/output_configuration.h"

using namespace Morquil;
using Settings = VideoOutputChangeSet;
using Availability = VideoOutputAvailabilityChangeSet;

CMorquilOutputConfiguration::CMorquilOutputConfiguration(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilOutputConfiguration, morquilOutputConfigurationPropertySetId,
              AvailabilityChange::Silent) {}

// clang-format off
STDMETHODIMP CMorquilOutputConfiguration::SetVideoMode(_MorquilAPIVideoMode mode) { return SendWord<VideoModes>(&Settings::videoMode, mode); }
STDMETHODIMP CMorquilOutputConfiguration::GetVideoMode(_MorquilAPIVideoMode* mode) { return Read(mode, &Settings::videoMode); }
STDMETHODIMP CMorquilOutputConfiguration::SetPixelFormat(_MorquilAPIPixelFormat format) { return SendWord<PixelFormats>(&Settings::videoPixelFormat, format); }
STDMETHODIMP CMorquilOutputConfiguration::GetPixelFormat(_MorquilAPIPixelFormat* format) { return Read(format, &Settings::videoPixelFormat); }
STDMETHODIMP CMorquilOutputConfiguration::SetAspectRatio(_MorquilAPIAspectRatio aspectRatio) { return SendWord<AspectRatios>(&Settings::aspectRatio, aspectRatio); }
STDMETHODIMP CMorquilOutputConfiguration::GetAspectRatio(_MorquilAPIAspectRatio* aspectRatio) { return Read(aspectRatio, &Settings::aspectRatio); }
STDMETHODIMP CMorquilOutputConfiguration::IsDemuxModeAvailable(_MorquilAPIDemuxMode mode, LONG* isAvailable) { return QueryList(&Availability::videoDemuxModes, mode, isAvailable); }
STDMETHODIMP CMorquilOutputConfiguration::IsPixelFormatAvailable(_MorquilAPIPixelFormat format, LONG* isAvailable) { return QueryList(&Availability::videoPixelFormats, format, isAvailable); }
STDMETHODIMP CMorquilOutputConfiguration::IsSDIModeAvailable(_MorquilAPISDIMode mode, LONG* isAvailable) { return QueryList(&Availability::outputSdiModes, mode, isAvailable); }
STDMETHODIMP CMorquilOutputConfiguration::IsQuadSDIOutputAvailable(_MorquilAPIQuadSDIOutput output, LONG* isAvailable) { return QueryList(&Availability::quadSdiOutputs, output, isAvailable); }
STDMETHODIMP CMorquilOutputConfiguration::IsAnalogOutputModeAvailable(_MorquilAPIVideoSource mode, LONG* isAvailable) { return QueryList(&Availability::videoSources, mode, isAvailable); }
STDMETHODIMP CMorquilOutputConfiguration::IsOutputOptionAvailable(_MorquilAPIOutputOption option, LONG* isAvailable) { return QueryList(&Availability::availableOutputOption, option, isAvailable); }
STDMETHODIMP CMorquilOutputConfiguration::GetStillFramePresent(LONG* present) { return Read(present, &Settings::stillFramePresent); }
STDMETHODIMP CMorquilOutputConfiguration::GetStillFrameLoadComplete(LONG* complete) { return Read(complete, &Settings::stillLoadComplete); }
STDMETHODIMP CMorquilOutputConfiguration::GetStillFrameStoreComplete(LONG* complete) { return Read(complete, &Settings::stillStoreComplete); }
STDMETHODIMP CMorquilOutputConfiguration::GetStillFramePreviewComplete(LONG* complete) { return Read(complete, &Settings::stillPreviewComplete); }
STDMETHODIMP CMorquilOutputConfiguration::SetDualLinkEnabled(_MorquilAPIDemuxMode mode) { return Send(&Settings::videoDemuxMode, mode); }
STDMETHODIMP CMorquilOutputConfiguration::GetDualLinkEnabled(_MorquilAPIDemuxMode* mode) { return Read(mode, &Settings::videoDemuxMode); }
STDMETHODIMP CMorquilOutputConfiguration::SetSDIMode(_MorquilAPISDIMode mode) { return Send(&Settings::outputSdiMode, mode); }
STDMETHODIMP CMorquilOutputConfiguration::GetSDIMode(_MorquilAPISDIMode* mode) { return Read(mode, &Settings::outputSdiMode); }
STDMETHODIMP CMorquilOutputConfiguration::SetQuadSDIOutput(_MorquilAPIQuadSDIOutput output) { return Send(&Settings::quadSdiOutput, output); }
STDMETHODIMP CMorquilOutputConfiguration::GetQuadSDIOutput(_MorquilAPIQuadSDIOutput* output) { return Read(output, &Settings::quadSdiOutput); }
STDMETHODIMP CMorquilOutputConfiguration::SetQuadAncillaryReplication(LONG enabled) { return SendYesNo(&Settings::quadAncillaryReplication, enabled); }
STDMETHODIMP CMorquilOutputConfiguration::GetQuadAncillaryReplication(LONG* enabled) { return Read(enabled, &Settings::quadAncillaryReplication); }
STDMETHODIMP CMorquilOutputConfiguration::SetAnalogOutputMode(_MorquilAPIVideoSource mode) { return SendWord<VideoSources>(&Settings::analogOutput, mode); }
STDMETHODIMP CMorquilOutputConfiguration::GetAnalogOutputMode(_MorquilAPIVideoSource* mode) { return Read(mode, &Settings::analogOutput); }
STDMETHODIMP CMorquilOutputConfiguration::SetOutputOption(_MorquilAPIOutputOption option) { return SendWord<OutputOptions>(&Settings::outputOption, option); }
STDMETHODIMP CMorquilOutputConfiguration::GetOutputOption(_MorquilAPIOutputOption* option) { return Read(option, &Settings::outputOption); }
STDMETHODIMP CMorquilOutputConfiguration::SetTransitionSetting(int setting) { return Send(&Settings::transitionSetting, setting); }
STDMETHODIMP CMorquilOutputConfiguration::GetTransitionSetting(int* setting) { return Read(setting, &Settings::transitionSetting); }
STDMETHODIMP CMorquilOutputConfiguration::GetTransitionSettingRange(int* min, int* max) { return ReadRange(min, max, &Availability::transitionSettingRange); }
STDMETHODIMP CMorquilOutputConfiguration::SetStillFrameAction(_MorquilAPIStillFrameAction action) { return SendWord<StillFrameActions>(&Settings::stillFrameAction, action); }
STDMETHODIMP CMorquilOutputConfiguration::SetHDMIOutput(_MorquilAPIPixelFormat format) { return SendWord<PixelFormats>(&Settings::hdmiOutput, format); }
STDMETHODIMP CMorquilOutputConfiguration::GetHDMIOutput(_MorquilAPIPixelFormat* format) { return Read(format, &Settings::hdmiOutput); }
STDMETHODIMP CMorquilOutputConfiguration::IsHDMIOutputAvailable(_MorquilAPIPixelFormat format, LONG* isAvailable) { return QueryList(&Availability::hdmiOutputs, format, isAvailable); }
// clang-format on

/// The conversions decide which ratio goes with which modes, so every ratio counts as available here.
STDMETHODIMP CMorquilOutputConfiguration::IsAspectRatioAvailable(_MorquilAPIAspectRatio /*aspectRatio*/,
                                                                 LONG* isAvailable) {
    if (isAvailable == nullptr) {
        return E_POINTER;
    }
    *isAvailable = 1;
    return S_OK;
}
