#pragma once

#include "MorquilDelivery.h"

/// The interface through which a host chooses where the library's text goes. References to it are counted by the
/// discovery object that owns it.
class CMorquilConsole final : public IMorquilConsole {
public:
    explicit CMorquilConsole(IUnknown& owner) : owner_(owner) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override { return owner_.QueryInterface(iid, out); }
    STDMETHODIMP_(ULONG) AddRef() override { return owner_.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return owner_.Release(); }
    STDMETHODIMP SetOutput(_MorquilConsoleMode mode, IMorquilConsoleObserver* observer) override;

private:
    IUnknown& owner_;
};
