#include "features/video_proc_amp.h"

using namespace Morquil;
using Settings = VideoProcAmpChangeSet;
using Availability = VideoProcAmpAvailabilityChangeSet;

CMorquilVideoProcAmp::CMorquilVideoProcAmp(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilVideoProcAmp, morquilVideoProcAmpPropertySetId, AvailabilityChange::Silent) {}

// clang-format off
STDMETHODIMP CMorquilVideoProcAmp::SetGain(int gain) { return Send(&Settings::gain, gain); }
STDMETHODIMP CMorquilVideoProcAmp::GetGain(int* gain) { return Read(gain, &Settings::gain); }
STDMETHODIMP CMorquilVideoProcAmp::GetGainRange(int* min, int* max) { return ReadRange(min, max, &Availability::gainRange); }
STDMETHODIMP CMorquilVideoProcAmp::SetBlackLevel(int level) { return Send(&Settings::black, level); }
STDMETHODIMP CMorquilVideoProcAmp::GetBlackLevel(int* level) { return Read(level, &Settings::black); }
STDMETHODIMP CMorquilVideoProcAmp::GetBlackLevelRange(int* min, int* max) { return ReadRange(min, max, &Availability::blackRange); }
STDMETHODIMP CMorquilVideoProcAmp::SetSaturation(int saturation) { return Send(&Settings::saturation, saturation); }
STDMETHODIMP CMorquilVideoProcAmp::GetSaturation(int* saturation) { return Read(saturation, &Settings::saturation); }
STDMETHODIMP CMorquilVideoProcAmp::GetSaturationRange(int* min, int* max) { return ReadRange(min, max, &Availability::saturationRange); }
STDMETHODIMP CMorquilVideoProcAmp::SetHue(int hue) { return Send(&Settings::hue, hue); }
STDMETHODIMP CMorquilVideoProcAmp::GetHue(int* hue) { return Read(hue, &Settings::hue); }
STDMETHODIMP CMorquilVideoProcAmp::GetHueRange(int* min, int* max) { return ReadRange(min, max, &Availability::hueRange); }
STDMETHODIMP CMorquilVideoProcAmp::SetRy(int ry) { return Send(&Settings::ry, ry); }
STDMETHODIMP CMorquilVideoProcAmp::GetRy(int* ry) { return Read(ry, &Settings::ry); }
STDMETHODIMP CMorquilVideoProcAmp::GetRyRange(int* min, int* max) { return ReadRange(min, max, &Availability::ryRange); }
STDMETHODIMP CMorquilVideoProcAmp::SetBy(int by) { return Send(&Settings::by, by); }
STDMETHODIMP CMorquilVideoProcAmp::GetBy(int* by) { return Read(by, &Settings::by); }
STDMETHODIMP CMorquilVideoProcAmp::GetByRange(int* min, int* max) { return ReadRange(min, max, &Availability::byRange); }
STDMETHODIMP CMorquilVideoProcAmp::SetSharpness(int sharpness) { return Send(&Settings::sharp, sharpness); }
STDMETHODIMP CMorquilVideoProcAmp::GetSharpness(int* sharpness) { return Read(sharpness, &Settings::sharp); }
STDMETHODIMP CMorquilVideoProcAmp::GetSharpnessRange(int* min, int* max) { return ReadRange(min, max, &Availability::sharpRange); }
STDMETHODIMP CMorquilVideoProcAmp::ResetAll() { return Send(&Settings::reset, true); }
STDMETHODIMP CMorquilVideoProcAmp::ResetValues(unsigned int values) { return Send(&Settings::resetValues, values); }
// clang-format on

/// A device that has reset its levels sends the new ones in a separate block; until then no level is known.
bool CMorquilVideoProcAmp::MergeSettings(Settings& copy, const Settings& incoming) {
    if (!incoming.reset.IsPresent()) {
        return Merge(copy, incoming);
    }
    Clear(copy);
    copy.reset = incoming.reset;
    return true;
}
