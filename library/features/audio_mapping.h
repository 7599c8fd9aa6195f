#pragma once

#include "features/feature.h"
#include "protocol/blocks/audio.h"

/// Audio routing. One gain and one delay apply to all channels: a setter sets them all, a getter returns the first.
class CMorquilAudioMapping final
    : public Morquil::Feature<IMorquilAudioMapping, Morquil::AudioChangeSet, Morquil::AudioAvailabilityChangeSet> {
public:
    CMorquilAudioMapping(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetAudioGain(int gain) override;
    STDMETHODIMP GetAudioGain(int* gain) override;
    STDMETHODIMP GetAudioGainRange(int* min, int* max) override;
    STDMETHODIMP SetAudioDelay(int delay) override;
    STDMETHODIMP GetAudioDelay(int* delay) override;
    STDMETHODIMP GetAudioDelayRange(int* min, int* max) override;
    STDMETHODIMP SetAESAnalogOutputSelect(LONG select) override;
    STDMETHODIMP GetAESAnalogOutputSelect(LONG* select) override;
    STDMETHODIMP IsAudioSelectionAvailable(_MorquilAPIAudioSelect select, LONG* isAvailable) override;
    STDMETHODIMP SetAudioMap(unsigned int outputChannel, _MorquilAPIAudioSelect inputChannel) override;
    STDMETHODIMP GetAudioMap(unsigned int outputChannel, _MorquilAPIAudioSelect* inputChannel) override;
    STDMETHODIMP SetAudioInMap(unsigned int inputPair, _MorquilAPIAudioInSourceSelect inputSource) override;
    STDMETHODIMP GetAudioInMap(unsigned int inputPair, _MorquilAPIAudioInSourceSelect* inputSource) override;
    STDMETHODIMP SetAudioMeterChan(_MorquilAPIAudioMeterChannels channels) override;
    STDMETHODIMP GetAudioMeterChan(_MorquilAPIAudioMeterChannels* channels) override;
    STDMETHODIMP SetAnalogInRefLevel(int level) override;
    STDMETHODIMP GetAnalogInRefLevel(int* level) override;
    STDMETHODIMP GetAnaInRefLevelRange(int* min, int* max) override;
    STDMETHODIMP ResetValues(unsigned int values) override;
};
