#include "features/noise_reduction.h"

using namespace Morquil;
using Settings = NoiseReductionChangeSet;
using Availability = NoiseReductionAvailabilityChangeSet;

CMorquilNoiseReduction::CMorquilNoiseReduction(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilNoiseReduction, morquilNoiseReductionPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilNoiseReduction::SetEnabled(LONG enabled) { return SendYesNo(&Settings::enabled, enabled); }
STDMETHODIMP CMorquilNoiseReduction::GetEnabled(LONG* enabled) { return Read(enabled, &Settings::enabled); }
STDMETHODIMP CMorquilNoiseReduction::SetBias(int bias) { return Send(&Settings::bias, bias); }
STDMETHODIMP CMorquilNoiseReduction::GetBias(int* bias) { return Read(bias, &Settings::bias); }
STDMETHODIMP CMorquilNoiseReduction::GetBiasRange(int* min, int* max) { return ReadRange(min, max, &Availability::biasRange); }
STDMETHODIMP CMorquilNoiseReduction::SetSplitScreen(LONG enabled) { return SendYesNo(&Settings::splitScreen, enabled); }
STDMETHODIMP CMorquilNoiseReduction::GetSplitScreen(LONG* enabled) { return Read(enabled, &Settings::splitScreen); }
STDMETHODIMP CMorquilNoiseReduction::SetRedOverlay(LONG enabled) { return SendYesNo(&Settings::redOverlay, enabled); }
STDMETHODIMP CMorquilNoiseReduction::GetRedOverlay(LONG* enabled) { return Read(enabled, &Settings::redOverlay); }
STDMETHODIMP CMorquilNoiseReduction::IsNoiseReductionAvailable(LONG* isAvailable) { return QueryFlag(&Availability::noiseReductionAvailable, isAvailable); }
// clang-format on
