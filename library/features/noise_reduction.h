#pragma once

#include "features/feature.h"
#include "protocol/blocks/noise_reduction.h"

/// Noise reduction.
class CMorquilNoiseReduction final : public Morquil::Feature<IMorquilNoiseReduction, Morquil::NoiseReductionChangeSet,
                                                             Morquil::NoiseReductionAvailabilityChangeSet> {
public:
    CMorquilNoiseReduction(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetEnabled(LONG enabled) override;
    STDMETHODIMP GetEnabled(LONG* enabled) override;
    STDMETHODIMP SetBias(int bias) override;
    STDMETHODIMP GetBias(int* bias) override;
    STDMETHODIMP GetBiasRange(int* min, int* max) override;
    STDMETHODIMP SetSplitScreen(LONG enabled) override;
    STDMETHODIMP GetSplitScreen(LONG* enabled) override;
    STDMETHODIMP SetRedOverlay(LONG enabled) override;
    STDMETHODIMP GetRedOverlay(LONG* enabled) override;
    STDMETHODIMP IsNoiseReductionAvailable(LONG* isAvailable) override;
};
