#include "features/aspect_fill.h"

using namespace Morquil;
using Settings = VideoAdjustChangeSet;
using Availability = VideoAdjustAvailabilityChangeSet;

CMorquilAspectFill::CMorquilAspectFill(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilAspectFill, morquilAspectFillPropertySetId, AvailabilityChange::Silent) {}

// clang-format off
STDMETHODIMP CMorquilAspectFill::SetLuma(unsigned int level) { return Send(&Settings::aspectFillLuma, level); }
STDMETHODIMP CMorquilAspectFill::GetLuma(unsigned int* level) { return Read(level, &Settings::aspectFillLuma); }
STDMETHODIMP CMorquilAspectFill::GetLumaRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::aspectFillLumaRange); }
STDMETHODIMP CMorquilAspectFill::SetCb(unsigned int level) { return Send(&Settings::aspectFillCb, level); }
STDMETHODIMP CMorquilAspectFill::GetCb(unsigned int* level) { return Read(level, &Settings::aspectFillCb); }
STDMETHODIMP CMorquilAspectFill::GetCbRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::aspectFillCbRange); }
STDMETHODIMP CMorquilAspectFill::SetCr(unsigned int level) { return Send(&Settings::aspectFillCr, level); }
STDMETHODIMP CMorquilAspectFill::GetCr(unsigned int* level) { return Read(level, &Settings::aspectFillCr); }
STDMETHODIMP CMorquilAspectFill::GetCrRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::aspectFillCrRange); }
STDMETHODIMP CMorquilAspectFill::ResetValues(unsigned int values) { return Send(&Settings::resetValues, values); }
// clang-format on

/// Other features share this block; changes to their values are not reported here. The command belongs to no feature.
bool CMorquilAspectFill::MergeSettings(Settings& copy, const Settings& incoming) {
    return MergeShared(copy, incoming, &Settings::aspectFillLuma, &Settings::aspectFillCb, &Settings::aspectFillCr);
}
