#include "features/color_correction.h"

using namespace Morquil;
using Settings = VideoAdjustChangeSet;
using Availability = VideoAdjustAvailabilityChangeSet;

CMorquilColorCorrection::CMorquilColorCorrection(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilColorCorrection, morquilColorCorrectionPropertySetId,
              AvailabilityChange::Silent) {}

// clang-format off
STDMETHODIMP CMorquilColorCorrection::SetRed(int red) { return Send(&Settings::red, red); }
STDMETHODIMP CMorquilColorCorrection::GetRed(int* red) { return Read(red, &Settings::red); }
STDMETHODIMP CMorquilColorCorrection::GetRedRange(int* min, int* max) { return ReadRange(min, max, &Availability::redRange); }
STDMETHODIMP CMorquilColorCorrection::SetGreen(int green) { return Send(&Settings::green, green); }
STDMETHODIMP CMorquilColorCorrection::GetGreen(int* green) { return Read(green, &Settings::green); }
STDMETHODIMP CMorquilColorCorrection::GetGreenRange(int* min, int* max) { return ReadRange(min, max, &Availability::greenRange); }
STDMETHODIMP CMorquilColorCorrection::SetBlue(int blue) { return Send(&Settings::blue, blue); }
STDMETHODIMP CMorquilColorCorrection::GetBlue(int* blue) { return Read(blue, &Settings::blue); }
STDMETHODIMP CMorquilColorCorrection::GetBlueRange(int* min, int* max) { return ReadRange(min, max, &Availability::blueRange); }
STDMETHODIMP CMorquilColorCorrection::ResetValues(unsigned int values) { return Send(&Settings::resetValues, values); }
// clang-format on

/// Other features share this block; changes to their values are not reported here. The command belongs to no feature.
bool CMorquilColorCorrection::MergeSettings(Settings& copy, const Settings& incoming) {
    return MergeShared(copy, incoming, &Settings::red, &Settings::green, &Settings::blue);
}
