#pragma once

#include <atomic>

#include "MorquilAPI.h"

namespace Morquil {

/// The IUnknown of an object with the interface `Interface`, which begins with one reference. `Object` derives from it
/// and offers
///   `void* FindInterface(REFIID iid)`  the interface `iid`, or null when it has none of that name
/// and a Release that ends in `DropReference`: when and how it is destroyed is its own.
template <class Object, class Interface>
class ComObject : public Interface {
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = static_cast<Object*>(this)->FindInterface(iid);
        if (*out == nullptr) {
            return E_NOINTERFACE;
        }
        static_cast<Object*>(this)->AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }

protected:
    ComObject() = default;
    ~ComObject() = default;

    /// Returns: how many references are left.
    ULONG DropReference() { return --references_; }

private:
    std::atomic<ULONG> references_ = 1;
};

}  // namespace Morquil
