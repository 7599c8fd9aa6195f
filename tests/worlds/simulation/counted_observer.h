#pragma once

#include "MorquilAPI.h"

namespace Morquil::Testing::Worlds {

/// An observer whose references are counted, but that stays.
template <class Interface>
class CountedObserver : public Interface {
public:
    STDMETHODIMP QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override { return --references_; }
    ULONG References() const { return references_; }

protected:
    ~CountedObserver() = default;

private:
    ULONG references_ = 0;
};

}  // namespace Morquil::Testing::Worlds
