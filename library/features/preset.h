#pragma once

#include "features/feature.h"
#include "protocol/blocks/preset.h"

/// Presets: commands and names.
/// Their numbers are judged by the range that the device reported, each method with a span of its own, and not at all
/// before the device has reported one.
class CMorquilPreset final
    : public Morquil::Feature<IMorquilPreset, Morquil::PresetChangeSet, Morquil::PresetAvailabilityChangeSet> {
public:
    CMorquilPreset(IUnknown& owner, Morquil::IMessageQueue& queue)
        : Feature(owner, queue, IID_IMorquilPreset, morquilPresetPropertySetId) {}

    STDMETHODIMP SavePreset(int preset) override;
    STDMETHODIMP RecallPreset(int preset) override;
    STDMETHODIMP GetPresetRange(int* min, int* max) override;
    STDMETHODIMP GetPresetName(int preset, BSTR* name) override;
    STDMETHODIMP SetPresetName(int preset, BSTR name) override;

private:
    /// Whether `preset` lies in the reported range, whose ends are moved by the two offsets first.
    bool Accepts(int preset, int minimumOffset, int maximumOffset) const;
};
