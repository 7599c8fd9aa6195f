#include "receipt_watcher.h"

STDMETHODIMP ReceiptWatcher::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    const bool known = iid == IID_IUnknown || iid == IID_IMorquilReceiptObserver;
    *object = known ? static_cast<IMorquilReceiptObserver*>(this) : nullptr;
    if (!known) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ReceiptWatcher::AddRef() {
    return ++references_;
}

STDMETHODIMP_(ULONG) ReceiptWatcher::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

STDMETHODIMP ReceiptWatcher::Answered(UINT64, UINT, UINT refused, UINT) {
    const std::lock_guard lock(mutex_);
    refused_ = refused;
    return S_OK;
}

STDMETHODIMP ReceiptWatcher::Settled(UINT64, UINT, UINT adjusted) {
    End(adjusted != 0 ? "adjusted" : "applied");
    return S_OK;
}

STDMETHODIMP ReceiptWatcher::Lost(UINT64, UINT, UINT, UINT, UINT) {
    End("lost");
    return S_OK;
}

const char* ReceiptWatcher::Await(std::chrono::seconds limit) {
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, limit, [&] { return outcome_ != nullptr; }) ? outcome_ : "timed out";
}

void ReceiptWatcher::End(const char* outcome) {
    {
        const std::lock_guard lock(mutex_);
        outcome_ = refused_ != 0 ? "refused" : outcome;
    }
    ended_.notify_all();
}
