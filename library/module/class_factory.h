// The class factory that COM asks for the discovery object.
#pragma once

#include "MorquilAPI.h"
#include "platform/com_object.h"

/// Hands out the discovery object of the process. Every living factory counts as one lock on the module.
/// Threads: any.
class CMorquilFactory final : public Morquil::ComObject<CMorquilFactory, IClassFactory> {
public:
    /// A factory with one reference, made for the class `clsid`.
    explicit CMorquilFactory(REFCLSID clsid) noexcept;
    CMorquilFactory(const CMorquilFactory&) = delete;
    CMorquilFactory& operator=(const CMorquilFactory&) = delete;

    void* FindInterface(REFIID iid);
    STDMETHODIMP_(ULONG) Release() override;

    /// Gives the discovery object, as IMorquilDiscovery whatever `iid` says: hosts rely on getting that pointer.
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;

    /// E_NOTIMPL: only factories keep the module loaded.
    STDMETHODIMP LockServer(BOOL lock) override;

private:
    ~CMorquilFactory();

    const CLSID clsid_;
};

namespace Morquil {

/// Number of living factories. Nothing else keeps the module from being unloaded.
LONG ModuleLockCount() noexcept;

}  // namespace Morquil
