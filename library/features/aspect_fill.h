#pragma once

#include "features/feature.h"
#include "protocol/blocks/video_adjust.h"

/// The colour of the area that the picture does not fill.
class CMorquilAspectFill final : public Morquil::Feature<IMorquilAspectFill, Morquil::VideoAdjustChangeSet,
                                                         Morquil::VideoAdjustAvailabilityChangeSet> {
public:
    CMorquilAspectFill(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetLuma(unsigned int level) override;
    STDMETHODIMP GetLuma(unsigned int* level) override;
    STDMETHODIMP GetLumaRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetCb(unsigned int level) override;
    STDMETHODIMP GetCb(unsigned int* level) override;
    STDMETHODIMP GetCbRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetCr(unsigned int level) override;
    STDMETHODIMP GetCr(unsigned int* level) override;
    STDMETHODIMP GetCrRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP ResetValues(unsigned int values) override;

protected:
    bool MergeSettings(Morquil::VideoAdjustChangeSet& copy, const Morquil::VideoAdjustChangeSet& incoming) override;
};
