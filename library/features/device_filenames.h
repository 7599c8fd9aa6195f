#pragma once

#include "features/feature.h"
#include "protocol/blocks/device_filenames.h"

/// The names of the device's files.
class CMorquilDeviceFilenames final
    : public Morquil::Feature<IMorquilDeviceFilenames, Morquil::DeviceFilenamesChangeSet> {
public:
    CMorquilDeviceFilenames(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP GetStillFrameName(BSTR* name) override;
    STDMETHODIMP SetStillFrameName(BSTR name) override;
};
