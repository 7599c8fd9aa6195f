#include "features/video_advanced.h"

using namespace Morquil;
using Settings = VideoAdvancedChangeSet;
using Availability = VideoAdvancedAvailabilityChangeSet;

CMorquilVideoAdvanced::CMorquilVideoAdvanced(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilVideoAdvanced, morquilVideoAdvancedPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilVideoAdvanced::SetCleanCadence(LONG enabled) { return SendYesNo(&Settings::cleanCadence, enabled); }
STDMETHODIMP CMorquilVideoAdvanced::GetCleanCadence(LONG* enabled) { return Read(enabled, &Settings::cleanCadence); }
STDMETHODIMP CMorquilVideoAdvanced::SetScenecutDetect(LONG enabled) { return SendYesNo(&Settings::scenecutDetect, enabled); }
STDMETHODIMP CMorquilVideoAdvanced::GetScenecutDetect(LONG* enabled) { return Read(enabled, &Settings::scenecutDetect); }
STDMETHODIMP CMorquilVideoAdvanced::SetAntiAlias(LONG enabled) { return SendYesNo(&Settings::antiAlias, enabled); }
STDMETHODIMP CMorquilVideoAdvanced::GetAntiAlias(LONG* enabled) { return Read(enabled, &Settings::antiAlias); }
STDMETHODIMP CMorquilVideoAdvanced::SetRP177(LONG enabled) { return SendYesNo(&Settings::rp177, enabled); }
STDMETHODIMP CMorquilVideoAdvanced::GetRP177(LONG* enabled) { return Read(enabled, &Settings::rp177); }
STDMETHODIMP CMorquilVideoAdvanced::SetSourceType(_MorquilAPISourceType type) { return SendWord<SourceTypes>(&Settings::sourceType, type); }
STDMETHODIMP CMorquilVideoAdvanced::GetSourceType(_MorquilAPISourceType* type) { return Read(type, &Settings::sourceType); }
STDMETHODIMP CMorquilVideoAdvanced::SetFrcAperture(_MorquilAPIFrcAperture aperture) { return SendWord<FrcApertures>(&Settings::frcAperture, aperture); }
STDMETHODIMP CMorquilVideoAdvanced::GetFrcAperture(_MorquilAPIFrcAperture* aperture) { return Read(aperture, &Settings::frcAperture); }
STDMETHODIMP CMorquilVideoAdvanced::SetProcMode(_MorquilAPIProcMode mode) { return SendWord<ProcessingModes>(&Settings::processing, mode); }
STDMETHODIMP CMorquilVideoAdvanced::GetProcMode(_MorquilAPIProcMode* mode) { return Read(mode, &Settings::processing); }
STDMETHODIMP CMorquilVideoAdvanced::GetFrcApertureRange(_MorquilAPIFrcAperture* min, _MorquilAPIFrcAperture* max) { return ReadRange(min, max, &Availability::frcApertureRange); }
STDMETHODIMP CMorquilVideoAdvanced::IsSourceTypeAvailable(_MorquilAPISourceType type, LONG* isAvailable) { return QueryList(&Availability::availableSourceTypes, type, isAvailable); }
STDMETHODIMP CMorquilVideoAdvanced::IsFrcApertureAvailable(LONG* isAvailable) { return QueryFlag(&Availability::frcApertureAvailable, isAvailable); }
STDMETHODIMP CMorquilVideoAdvanced::IsProcModeAvailable(_MorquilAPIProcMode mode, LONG* isAvailable) { return QueryList(&Availability::availableProcessingModes, mode, isAvailable); }
// clang-format on
