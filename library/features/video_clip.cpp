#include "features/video_clip.h"

using namespace Morquil;
using Settings = VideoAdjustChangeSet;
using Availability = VideoAdjustAvailabilityChangeSet;

CMorquilVideoClip::CMorquilVideoClip(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilVideoClip, morquilVideoClipPropertySetId, AvailabilityChange::Silent) {}

// clang-format off
STDMETHODIMP CMorquilVideoClip::SetLumaLow(unsigned int level) { return Send(&Settings::lumaLow, level); }
STDMETHODIMP CMorquilVideoClip::GetLumaLow(unsigned int* level) { return Read(level, &Settings::lumaLow); }
STDMETHODIMP CMorquilVideoClip::GetLumaLowRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::lumaLowRange); }
STDMETHODIMP CMorquilVideoClip::SetLumaHigh(unsigned int level) { return Send(&Settings::lumaHigh, level); }
STDMETHODIMP CMorquilVideoClip::GetLumaHigh(unsigned int* level) { return Read(level, &Settings::lumaHigh); }
STDMETHODIMP CMorquilVideoClip::GetLumaHighRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::lumaHighRange); }
STDMETHODIMP CMorquilVideoClip::SetChromaLow(unsigned int level) { return Send(&Settings::chromaLow, level); }
STDMETHODIMP CMorquilVideoClip::GetChromaLow(unsigned int* level) { return Read(level, &Settings::chromaLow); }
STDMETHODIMP CMorquilVideoClip::GetChromaLowRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::chromaLowRange); }
STDMETHODIMP CMorquilVideoClip::SetChromaHigh(unsigned int level) { return Send(&Settings::chromaHigh, level); }
STDMETHODIMP CMorquilVideoClip::GetChromaHigh(unsigned int* level) { return Read(level, &Settings::chromaHigh); }
STDMETHODIMP CMorquilVideoClip::GetChromaHighRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::chromaHighRange); }
STDMETHODIMP CMorquilVideoClip::ResetValues(unsigned int values) { return Send(&Settings::resetValues, values); }
// clang-format on

/// Other features share this block; changes to their values are not reported here. The command belongs to no feature.
bool CMorquilVideoClip::MergeSettings(Settings& copy, const Settings& incoming) {
    return MergeShared(copy, incoming, &Settings::lumaLow, &Settings::lumaHigh, &Settings::chromaLow,
                       &Settings::chromaHigh);
}
