#include "features/preset.h"

#include <cstdint>

using namespace Morquil;
using Settings = PresetChangeSet;
using Availability = PresetAvailabilityChangeSet;

// In bytes of UTF-8, including the terminating zero.
static constexpr std::size_t presetNameLimit = 1024;

CMorquilPreset::CMorquilPreset(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilPreset, morquilPresetPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilPreset::SavePreset(int preset) { return Accepts(preset, 0, 1) ? Send(&Settings::save, preset) : E_INVALIDARG; }
STDMETHODIMP CMorquilPreset::RecallPreset(int preset) { return Accepts(preset, 0, 2) ? Send(&Settings::recall, preset) : E_INVALIDARG; }
STDMETHODIMP CMorquilPreset::GetPresetRange(int* min, int* max) { return ReadRange(min, max, &Availability::presetRange); }
STDMETHODIMP CMorquilPreset::GetPresetName(int preset, BSTR* name) { return Accepts(preset, -1, -1) ? ReadTextElement(name, &Settings::presetName, IndexOf(preset)) : E_INVALIDARG; }
STDMETHODIMP CMorquilPreset::SetPresetName(int preset, BSTR name) { return Accepts(preset, -1, -1) ? SendTextElement(&Settings::presetName, IndexOf(preset), name, presetNameLimit) : E_INVALIDARG; }
// clang-format on

bool CMorquilPreset::Accepts(int preset, int minimumOffset, int maximumOffset) const {
    const auto range = CopyAvailability().presetRange;
    // In 64 bits: the range may end at the largest 32-bit number.
    return !range.IsPresent() || (preset >= std::int64_t{range.Get().minimum} + minimumOffset &&
                                  preset <= std::int64_t{range.Get().maximum} + maximumOffset);
}
