#pragma once

#include "features/feature.h"
#include "protocol/blocks/preset.h"

/// Preset commands and names.
/// Each method checks the preset number against its own span around the range that the device reported. Before the
/// device has reported a range, nothing is checked.
class CMorquilPreset final
    : public Morquil::Feature<IMorquilPreset, Morquil::PresetChangeSet, Morquil::PresetAvailabilityChangeSet> {
public:
    CMorquilPreset(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SavePreset(int preset) override;
    STDMETHODIMP RecallPreset(int preset) override;
    STDMETHODIMP GetPresetRange(int* min, int* max) override;
    STDMETHODIMP GetPresetName(int preset, BSTR* name) override;
    STDMETHODIMP SetPresetName(int preset, BSTR name) override;

private:
    /// Whether `preset` lies in the reported range after the two offsets have moved its ends.
    bool Accepts(int preset, int minimumOffset, int maximumOffset) const;
};
