// The entry points of a COM server that exist on every system.
#include <new>

#include "MorquilAPI.h"
#include "module/class_factory.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
    if (clsid != CLSID_CMorquilDiscovery) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    if (object == nullptr) {
        return E_POINTER;
    }
    auto* const factory = new (std::nothrow) CMorquilFactory(clsid);
    if (factory == nullptr) {
        return E_OUTOFMEMORY;
    }
    void* found = nullptr;
    const HRESULT result = factory->QueryInterface(iid, &found);
    factory->Release();
    // The factory sets its out-pointer to null on failure, but this function's caller must keep its old value.
    if (SUCCEEDED(result)) {
        *object = found;
    }
    return result;
}

STDAPI DllCanUnloadNow() {
    return Morquil::ModuleLockCount() == 0 ? S_OK : S_FALSE;
}
