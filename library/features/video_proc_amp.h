#pragma once

#include "features/feature.h"
#include "protocol/blocks/video_proc_amp.h"

/// The video processing amplifier: picture levels.
class CMorquilVideoProcAmp final : public Morquil::Feature<IMorquilVideoProcAmp, Morquil::VideoProcAmpChangeSet,
                                                           Morquil::VideoProcAmpAvailabilityChangeSet> {
public:
    CMorquilVideoProcAmp(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetGain(int gain) override;
    STDMETHODIMP GetGain(int* gain) override;
    STDMETHODIMP GetGainRange(int* min, int* max) override;
    STDMETHODIMP SetBlackLevel(int level) override;
    STDMETHODIMP GetBlackLevel(int* level) override;
    STDMETHODIMP GetBlackLevelRange(int* min, int* max) override;
    STDMETHODIMP SetSaturation(int saturation) override;
    STDMETHODIMP GetSaturation(int* saturation) override;
    STDMETHODIMP GetSaturationRange(int* min, int* max) override;
    STDMETHODIMP SetHue(int hue) override;
    STDMETHODIMP GetHue(int* hue) override;
    STDMETHODIMP GetHueRange(int* min, int* max) override;
    STDMETHODIMP SetRy(int ry) override;
    STDMETHODIMP GetRy(int* ry) override;
    STDMETHODIMP GetRyRange(int* min, int* max) override;
    STDMETHODIMP SetBy(int by) override;
    STDMETHODIMP GetBy(int* by) override;
    STDMETHODIMP GetByRange(int* min, int* max) override;
    STDMETHODIMP SetSharpness(int sharpness) override;
    STDMETHODIMP GetSharpness(int* sharpness) override;
    STDMETHODIMP GetSharpnessRange(int* min, int* max) override;
    STDMETHODIMP ResetAll() override;
    STDMETHODIMP ResetValues(unsigned int values) override;

protected:
    bool MergeSettings(Morquil::VideoProcAmpChangeSet& copy, const Morquil::VideoProcAmpChangeSet& incoming) override;
};
