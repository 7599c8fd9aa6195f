#include "module/class_factory.h"

#include <atomic>

#include "MorquilEntry.h"

namespace {

std::atomic<LONG> moduleLocks{0};

}  // namespace

CMorquilFactory::CMorquilFactory(REFCLSID clsid) noexcept : clsid_(clsid) {
    ++moduleLocks;
}

CMorquilFactory::~CMorquilFactory() {
    --moduleLocks;
}

void* CMorquilFactory::FindInterface(REFIID iid) {
    return iid == IID_IUnknown || iid == IID_IClassFactory ? static_cast<IClassFactory*>(this) : nullptr;
}

STDMETHODIMP_(ULONG) CMorquilFactory::Release() {
    const ULONG left = DropReference();
    if (left == 0) {
        delete this;
    }
    return left;
}

STDMETHODIMP CMorquilFactory::CreateInstance(IUnknown* outer, REFIID, void** object) {
    if (outer != nullptr) {
        return CLASS_E_NOAGGREGATION;
    }
    if (clsid_ != CLSID_CMorquilDiscovery) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    if (object == nullptr) {
        return E_POINTER;
    }
    IMorquilDiscovery* const discovery = GetMorquilDiscoveryInstance_0000();
    if (discovery == nullptr) {
        return E_OUTOFMEMORY;
    }
    *object = discovery;
    return S_OK;
}

STDMETHODIMP CMorquilFactory::LockServer(BOOL) {
    return E_NOTIMPL;
}

namespace Morquil {

LONG ModuleLockCount() noexcept {
    return moduleLocks;
}

}  // namespace Morquil
