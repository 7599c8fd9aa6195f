#pragma once

#include <atomic>

#include "MorquilAPI.h"

namespace Morquil {

/// The IUnknown of an object with the interface `Interface`. The object starts with one reference. `Object` derives
/// from this class and provides
///   `void* FindInterface(REFIID iid)`, which returns the interface `iid`, or null when the object does not have it,
///   and a Release that calls `DropReference`. `Object` decides when and how it is destroyed.
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

    /// Returns: the number of references left.
    ULONG DropReference() { return --references_; }

private:
    std::atomic<ULONG> references_ = 1;
};

}  // namespace Morquil
