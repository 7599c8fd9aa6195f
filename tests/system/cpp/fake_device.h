#pragma once

#include <functional>
#include <string>

#include "morquil.hpp"

namespace Morquil::Testing {

/// A device object that a test plays. Its connection may end inside a call that saves.
class FakeDevice : public morquil::detail::HostObject<IMorquilDevice> {
public:
    std::function<HRESULT(const std::string& path)> onSave;
    bool isKnown = true;

    STDMETHODIMP AddConnectionObserver(IMorquilConnectionObserver*) override { return S_OK; }
    STDMETHODIMP RemoveConnectionObserver(IMorquilConnectionObserver*) override { return S_OK; }
    STDMETHODIMP AddPropertyObserver(IMorquilPropertyObserver*, _MorquilPropertySetId) override { return S_OK; }
    STDMETHODIMP RemovePropertyObserver(IMorquilPropertyObserver*, _MorquilPropertySetId) override { return S_OK; }
    STDMETHODIMP GetDeviceName(BSTR*) override { return E_FAIL; }
    STDMETHODIMP GetSoftwareVersion(UINT*) override { return isKnown ? S_OK : E_FAIL; }
    STDMETHODIMP GetFPGAVersion(UINT*) override { return E_FAIL; }
    STDMETHODIMP GetPanelLock(LONG*) override { return E_FAIL; }
    STDMETHODIMP GetRemoteLock(LONG*) override { return E_FAIL; }
    STDMETHODIMP GetNetworkUpdateSupported(LONG*) override { return S_OK; }
    STDMETHODIMP IsConversionSupported(_MorquilAPIVideoMode, _MorquilAPIVideoMode, _MorquilAPIAspectRatio,
                                       LONG*) override {
        return S_OK;
    }
    STDMETHODIMP SetPanelLock(LONG) override { return S_OK; }
    STDMETHODIMP SaveSettingsFile(BSTR path) override {
        return onSave(morquil::detail::Utf8FromUtf16({path, SysStringLen(path)}));
    }
    STDMETHODIMP LoadSettingsFile(BSTR) override { return S_FALSE; }
};

/// The C++ layer's device over a device object that a test plays; takes over its reference.
inline morquil::Device Wrapped(IMorquilDevice* fake) {
    return {morquil::Pointer<IMorquilDiscovery>(), morquil::Pointer<IMorquilDevice>::Adopt(fake),
            std::make_shared<const std::atomic<bool>>(true)};
}

}  // namespace Morquil::Testing
