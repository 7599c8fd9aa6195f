#pragma once

#include "MorquilAPI.h"
#include "platform/com_object.h"

/// The host's way in: makes device objects and connects them by address. One per process at a time; keeps no list of
/// devices, which live on without it.
class CMorquilDiscovery final : public Morquil::ComObject<CMorquilDiscovery, IMorquilDiscovery> {
public:
    void* FindInterface(REFIID iid);
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP Connect(BSTR deviceAddress, IMorquilDevice** device, _MorquilConnectToFailure* failReason) override;
    STDMETHODIMP ConnectAsync(BSTR deviceAddress, IMorquilDevice** device,
                              IMorquilConnectionObserver* observer) override;
    STDMETHODIMP Disconnect(IMorquilDevice* device) override;
    /// There is no device search: succeeds and gives no list.
    STDMETHODIMP FindDevices(IMorquilIterator** deviceList) override;
};
