#pragma once

#include "features/feature.h"
#include "protocol/blocks/video_input.h"

/// The input: its settings, and what the device detects there.
class CMorquilInputConfiguration final
    : public Morquil::Feature<IMorquilInputConfiguration, Morquil::VideoInputChangeSet,
                              Morquil::VideoInputAvailabilityChangeSet> {
public:
    CMorquilInputConfiguration(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetAutoDetectionEnabled(LONG enabled) override;
    STDMETHODIMP GetAutoDetectionEnabled(LONG* enabled) override;
    STDMETHODIMP SetAutoDetectionPreferPsf(LONG prefer) override;
    STDMETHODIMP GetAutoDetectionPreferPsf(LONG* prefer) override;
    STDMETHODIMP SetHdmi3DFull(LONG full) override;
    STDMETHODIMP GetHdmi3DFull(LONG* full) override;
    STDMETHODIMP SetVideoSource(_MorquilAPIVideoSource source) override;
    STDMETHODIMP GetVideoSource(_MorquilAPIVideoSource* source) override;
    STDMETHODIMP IsVideoSourceAvailable(_MorquilAPIVideoSource source, LONG* isAvailable) override;
    STDMETHODIMP SetAudioSource(_MorquilAPIAudioSource source) override;
    STDMETHODIMP GetAudioSource(_MorquilAPIAudioSource* source) override;
    STDMETHODIMP IsAudioSourceAvailable(_MorquilAPIAudioSource source, LONG* isAvailable) override;
    STDMETHODIMP GetSignalPresent(LONG* present) override;
    STDMETHODIMP GetTimecodePresent(_MorquilAPITimecodePresent* present) override;
    STDMETHODIMP GetClosedCaptionPresent(_MorquilAPIClosedCaptionPresent* present) override;
    STDMETHODIMP GetOpticalModulePresent(LONG* present) override;
    STDMETHODIMP SetWideSDAspectEnabled(LONG enabled) override;
    STDMETHODIMP GetWideSDAspectEnabled(LONG* enabled) override;
    STDMETHODIMP SetVideoMode(_MorquilAPIVideoMode mode) override;
    STDMETHODIMP GetVideoMode(_MorquilAPIVideoMode* mode) override;
    STDMETHODIMP GetPixelFormat(_MorquilAPIPixelFormat* format) override;
    STDMETHODIMP GetPCIeMode(_MorquilAPIPCIeMode* mode) override;

protected:
    bool MergeAvailability(Morquil::VideoInputAvailabilityChangeSet& copy,
                           const Morquil::VideoInputAvailabilityChangeSet& incoming) override;
};
