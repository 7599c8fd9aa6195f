#pragma once

#include "features/feature.h"
#include "protocol/blocks/video_advanced.h"

/// Frame rate conversion and processing.
class CMorquilVideoAdvanced final : public Morquil::Feature<IMorquilVideoAdvanced, Morquil::VideoAdvancedChangeSet,
                                                            Morquil::VideoAdvancedAvailabilityChangeSet> {
public:
    CMorquilVideoAdvanced(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetCleanCadence(LONG enabled) override;
    STDMETHODIMP GetCleanCadence(LONG* enabled) override;
    STDMETHODIMP SetScenecutDetect(LONG enabled) override;
    STDMETHODIMP GetScenecutDetect(LONG* enabled) override;
    STDMETHODIMP SetAntiAlias(LONG enabled) override;
    STDMETHODIMP GetAntiAlias(LONG* enabled) override;
    STDMETHODIMP SetRP177(LONG enabled) override;
    STDMETHODIMP GetRP177(LONG* enabled) override;
    STDMETHODIMP SetSourceType(_MorquilAPISourceType type) override;
    STDMETHODIMP GetSourceType(_MorquilAPISourceType* type) override;
    STDMETHODIMP SetFrcAperture(_MorquilAPIFrcAperture aperture) override;
    STDMETHODIMP GetFrcAperture(_MorquilAPIFrcAperture* aperture) override;
    STDMETHODIMP SetProcMode(_MorquilAPIProcMode mode) override;
    STDMETHODIMP GetProcMode(_MorquilAPIProcMode* mode) override;
    STDMETHODIMP GetFrcApertureRange(_MorquilAPIFrcAperture* min, _MorquilAPIFrcAperture* max) override;
    STDMETHODIMP IsSourceTypeAvailable(_MorquilAPISourceType type, LONG* isAvailable) override;
    STDMETHODIMP IsFrcApertureAvailable(LONG* isAvailable) override;
    STDMETHODIMP IsProcModeAvailable(_MorquilAPIProcMode mode, LONG* isAvailable) override;
};
