#include "device/discovery.h"

#include <new>

#include "MorquilEntry.h"
#include "core/static_lock.h"
#include "core/thread_safety.h"
#include "device/device.h"
#include "transport/console.h"

using QRN::Core::StaticLock;
using QRN::Core::StaticLockHold;

namespace {

/// Serialises making the object, its last release and forgetting it, so that no caller receives one that is being
/// destroyed.
StaticLock singletonLock;
CMorquilDiscovery* singleton GUARDED_BY(singletonLock) = nullptr;

/// Makes a device object and connects it. A failure of any kind is E_FAIL; the reason says which.
HRESULT ConnectNewDevice(BSTR address, IMorquilDevice** device, IMorquilConnectionObserver* observer,
                         _MorquilConnectToFailure* failReason) {
    if (device == nullptr) {
        return E_POINTER;
    }
    CMorquilDevice* connecting = nullptr;
    try {
        connecting = new CMorquilDevice();
    } catch (...) {
        // Out of memory or wake-ups: no device object can be made.
        return E_FAIL;
    }
    if (FAILED(connecting->Connect(address, observer, failReason))) {
        connecting->Release();
        return E_FAIL;
    }
    *device = connecting;
    return S_OK;
}

}  // namespace

extern "C" IMorquilDiscovery* GetMorquilDiscoveryInstance_0000() {
    const StaticLockHold hold(singletonLock);
    if (singleton == nullptr) {
        singleton = new (std::nothrow) CMorquilDiscovery();
    } else {
        singleton->AddRef();
    }
    return singleton;
}

void* CMorquilDiscovery::FindInterface(REFIID iid) {
    if (IsEqualIID(iid, IID_IMorquilConsole)) {
        return static_cast<IMorquilConsole*>(&console_);
    }
    const bool isOwn = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IMorquilDiscovery);
    return isOwn ? static_cast<IMorquilDiscovery*>(this) : nullptr;
}

STDMETHODIMP_(ULONG) CMorquilDiscovery::Release() {
    ULONG remaining = 0;
    {
        const StaticLockHold hold(singletonLock);
        remaining = DropReference();
        if (remaining == 0) {
            singleton = nullptr;
        }
    }
    if (remaining == 0) {
        delete this;
    }
    return remaining;
}

STDMETHODIMP CMorquilConsole::SetOutput(_MorquilConsoleMode mode, IMorquilConsoleObserver* observer) {
    return Morquil::SetConsoleOutput(mode, observer);
}

STDMETHODIMP CMorquilDiscovery::Connect(BSTR deviceAddress, IMorquilDevice** device,
                                        _MorquilConnectToFailure* failReason) {
    return failReason == nullptr ? E_POINTER : ConnectNewDevice(deviceAddress, device, nullptr, failReason);
}

STDMETHODIMP CMorquilDiscovery::ConnectAsync(BSTR deviceAddress, IMorquilDevice** device,
                                             IMorquilConnectionObserver* observer) {
    _MorquilConnectToFailure unused = morquilConnectToFailureNoResponse;
    return observer == nullptr ? E_POINTER : ConnectNewDevice(deviceAddress, device, observer, &unused);
}

STDMETHODIMP CMorquilDiscovery::Disconnect(IMorquilDevice* device) {
    if (device == nullptr) {
        return E_POINTER;
    }
    static_cast<CMorquilDevice*>(device)->Disconnect();
    return S_OK;
}

STDMETHODIMP CMorquilDiscovery::FindDevices(IMorquilIterator** /*deviceList*/) {
    return S_OK;
}
