#include "features/input_configuration.h"

using namespace Morquil;
using Settings = VideoInputChangeSet;
using Availability = VideoInputAvailabilityChangeSet;

CMorquilInputConfiguration::CMorquilInputConfiguration(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilInputConfiguration, morquilInputConfigurationPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilInputConfiguration::SetAutoDetectionEnabled(LONG enabled) { return SendYesNo(&Settings::autoDetectionEnabled, enabled); }
STDMETHODIMP CMorquilInputConfiguration::GetAutoDetectionEnabled(LONG* enabled) { return Read(enabled, &Settings::autoDetectionEnabled); }
STDMETHODIMP CMorquilInputConfiguration::SetAutoDetectionPreferPsf(LONG prefer) { return SendYesNo(&Settings::autoDetectionPreferPsF, prefer); }
STDMETHODIMP CMorquilInputConfiguration::GetAutoDetectionPreferPsf(LONG* prefer) { return Read(prefer, &Settings::autoDetectionPreferPsF); }
STDMETHODIMP CMorquilInputConfiguration::SetHdmi3DFull(LONG full) { return SendYesNo(&Settings::hdmi3DFull, full); }
STDMETHODIMP CMorquilInputConfiguration::GetHdmi3DFull(LONG* full) { return Read(full, &Settings::hdmi3DFull); }
STDMETHODIMP CMorquilInputConfiguration::SetVideoSource(_MorquilAPIVideoSource source) { return SendWord<VideoSources>(&Settings::videoSource, source); }
STDMETHODIMP CMorquilInputConfiguration::GetVideoSource(_MorquilAPIVideoSource* source) { return Read(source, &Settings::videoSource); }
STDMETHODIMP CMorquilInputConfiguration::IsVideoSourceAvailable(_MorquilAPIVideoSource source, LONG* isAvailable) { return QueryList(&Availability::videoSources, source, isAvailable); }
STDMETHODIMP CMorquilInputConfiguration::SetAudioSource(_MorquilAPIAudioSource source) { return SendWord<AudioSources>(&Settings::audioSource, source); }
STDMETHODIMP CMorquilInputConfiguration::GetAudioSource(_MorquilAPIAudioSource* source) { return Read(source, &Settings::audioSource); }
STDMETHODIMP CMorquilInputConfiguration::IsAudioSourceAvailable(_MorquilAPIAudioSource source, LONG* isAvailable) { return QueryList(&Availability::audioSources, source, isAvailable); }
STDMETHODIMP CMorquilInputConfiguration::GetSignalPresent(LONG* present) { return Read(present, &Settings::signalPresent); }
STDMETHODIMP CMorquilInputConfiguration::GetTimecodePresent(_MorquilAPITimecodePresent* present) { return Read(present, &Settings::timecodePresent); }
STDMETHODIMP CMorquilInputConfiguration::GetClosedCaptionPresent(_MorquilAPIClosedCaptionPresent* present) { return Read(present, &Settings::closedCaptioningPresent); }
STDMETHODIMP CMorquilInputConfiguration::GetOpticalModulePresent(LONG* present) { return Read(present, &Settings::opticalModulePresent); }
STDMETHODIMP CMorquilInputConfiguration::SetWideSDAspectEnabled(LONG enabled) { return SendYesNo(&Settings::wideSDAspect, enabled); }
STDMETHODIMP CMorquilInputConfiguration::GetWideSDAspectEnabled(LONG* enabled) { return Read(enabled, &Settings::wideSDAspect); }
STDMETHODIMP CMorquilInputConfiguration::SetVideoMode(_MorquilAPIVideoMode mode) { return SendWord<VideoModes>(&Settings::videoMode, mode); }
STDMETHODIMP CMorquilInputConfiguration::GetVideoMode(_MorquilAPIVideoMode* mode) { return Read(mode, &Settings::videoMode); }
STDMETHODIMP CMorquilInputConfiguration::GetPixelFormat(_MorquilAPIPixelFormat* format) { return Read(format, &Settings::videoPixelFormat); }
STDMETHODIMP CMorquilInputConfiguration::GetPCIeMode(_MorquilAPIPCIeMode* mode) { return Read(mode, &Settings::pcieMode); }
// clang-format on

/// Observers are notified when a flag changes, not of a first list that offers nothing.
bool CMorquilInputConfiguration::MergeAvailability(Availability& copy, const Availability& incoming) {
    const Availability before = copy;
    Merge(copy, incoming);
    return copy.videoSources.DiffersFrom(before.videoSources) || copy.audioSources.DiffersFrom(before.audioSources) ||
           copy.videoPixelFormats.DiffersFrom(before.videoPixelFormats);
}
