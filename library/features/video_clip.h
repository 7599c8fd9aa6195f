#pragma once

#include "features/feature.h"
#include "protocol/blocks/video_adjust.h"

/// Luma and chroma limits.
class CMorquilVideoClip final : public Morquil::Feature<IMorquilVideoClip, Morquil::VideoAdjustChangeSet,
                                                        Morquil::VideoAdjustAvailabilityChangeSet> {
public:
    CMorquilVideoClip(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetLumaLow(unsigned int level) override;
    STDMETHODIMP GetLumaLow(unsigned int* level) override;
    STDMETHODIMP GetLumaLowRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetLumaHigh(unsigned int level) override;
    STDMETHODIMP GetLumaHigh(unsigned int* level) override;
    STDMETHODIMP GetLumaHighRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetChromaLow(unsigned int level) override;
    STDMETHODIMP GetChromaLow(unsigned int* level) override;
    STDMETHODIMP GetChromaLowRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetChromaHigh(unsigned int level) override;
    STDMETHODIMP GetChromaHigh(unsigned int* level) override;
    STDMETHODIMP GetChromaHighRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP ResetValues(unsigned int values) override;

protected:
    bool MergeSettings(Morquil::VideoAdjustChangeSet& copy, const Morquil::VideoAdjustChangeSet& incoming) override;
};
