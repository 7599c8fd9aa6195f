#pragma once

#include "features/feature.h"
#include "protocol/blocks/video_adjust.h"

/// Red, green and blue levels.
class CMorquilColorCorrection final : public Morquil::Feature<IMorquilColorCorrection, Morquil::VideoAdjustChangeSet,
                                                              Morquil::VideoAdjustAvailabilityChangeSet> {
public:
    CMorquilColorCorrection(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetRed(int red) override;
    STDMETHODIMP GetRed(int* red) override;
    STDMETHODIMP GetRedRange(int* min, int* max) override;
    STDMETHODIMP SetGreen(int green) override;
    STDMETHODIMP GetGreen(int* green) override;
    STDMETHODIMP GetGreenRange(int* min, int* max) override;
    STDMETHODIMP SetBlue(int blue) override;
    STDMETHODIMP GetBlue(int* blue) override;
    STDMETHODIMP GetBlueRange(int* min, int* max) override;
    STDMETHODIMP ResetValues(unsigned int values) override;

protected:
    bool MergeSettings(Morquil::VideoAdjustChangeSet& copy, const Morquil::VideoAdjustChangeSet& incoming) override;
};
