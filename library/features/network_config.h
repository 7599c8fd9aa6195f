#pragma once

#include "features/feature.h"
#include "protocol/blocks/network_config.h"

/// The device's network settings. Only its name can be set.
class CMorquilNetworkConfig final : public Morquil::Feature<IMorquilNetworkConfig, Morquil::NetworkConfigChangeSet> {
public:
    CMorquilNetworkConfig(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP GetFriendlyName(BSTR* name) override;
    STDMETHODIMP SetFriendlyName(BSTR name) override;
    STDMETHODIMP GetDHCPEnabled(LONG* enabled) override;
    STDMETHODIMP GetIPAddress(unsigned int* address) override;
    STDMETHODIMP GetGateway(unsigned int* address) override;
    STDMETHODIMP GetSubnet(unsigned int* mask) override;
};
