// The class factory from which COM gets the discovery object.
#pragma once

#include "MorquilAPI.h"
#include "platform/com_object.h"

/// Provides the process's discovery object. Every existing factory counts as one lock on the module.
/// Threads: any.
class CMorquilFactory final : public Morquil::ComObject<CMorquilFactory, IClassFactory> {
public:
    /// Creates a factory for the class `clsid`, with one reference.
    explicit CMorquilFactory(REFCLSID clsid) noexcept;
    CMorquilFactory(const CMorquilFactory&) = delete;
    CMorquilFactory& operator=(const CMorquilFactory&) = delete;

    void* FindInterface(REFIID iid);
    STDMETHODIMP_(ULONG) Release() override;

    /// Stores the discovery object in `*object`, as IMorquilDiscovery whatever `iid` says: hosts rely on that pointer.
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;

    /// Returns E_NOTIMPL: only factories keep the module loaded.
    STDMETHODIMP LockServer(BOOL lock) override;

private:
    ~CMorquilFactory();

    const CLSID clsid_;
};

namespace Morquil {

/// The number of existing factories. Nothing else prevents the module from being unloaded.
LONG ModuleLockCount() noexcept;

}  // namespace Morquil
