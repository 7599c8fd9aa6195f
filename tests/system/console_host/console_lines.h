#pragma once

#include <atomic>
#include <mutex>
#include <string>

#include "MorquilDelivery.h"

/// Keeps the lines that the library passes on; those of a device are plain ASCII here. Outlives its registration.
class ConsoleLines final : public IMorquilConsoleObserver {
public:
    STDMETHODIMP QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override { return --references_; }
    STDMETHODIMP Line(BSTR text) override {
        const std::lock_guard hold(lock_);
        for (UINT place = 0; place < SysStringLen(text); ++place) {
            text_ += static_cast<char>(text[place]);
        }
        text_ += '\n';
        return S_OK;
    }

    std::string Text() {
        const std::lock_guard hold(lock_);
        return text_;
    }

private:
    std::atomic<ULONG> references_ = 1;
    std::mutex lock_;
    std::string text_;
};
