#pragma once

#include "MorquilAPI.h"
#include "device/console_interface.h"
#include "platform/com_object.h"

/// The host's entry point: makes device objects and connects them by address. A process has at most one at a time. It
/// keeps no list of devices, and they outlive it.
class CMorquilDiscovery final : public Morquil::ComObject<CMorquilDiscovery, IMorquilDiscovery> {
public:
    void* FindInterface(REFIID iid);
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP Connect(BSTR deviceAddress, IMorquilDevice** device, _MorquilConnectToFailure* failReason) override;
    STDMETHODIMP ConnectAsync(BSTR deviceAddress, IMorquilDevice** device,
                              IMorquilConnectionObserver* observer) override;
    STDMETHODIMP Disconnect(IMorquilDevice* device) override;
    /// Device search is not supported: succeeds and returns no list.
    STDMETHODIMP FindDevices(IMorquilIterator** deviceList) override;

private:
    CMorquilConsole console_{*this};
};
