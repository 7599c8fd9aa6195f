#include "property_watcher.h"

STDMETHODIMP PropertyWatcher::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    const bool known = iid == IID_IUnknown || iid == IID_IMorquilPropertyObserver;
    *object = known ? static_cast<IMorquilPropertyObserver*>(this) : nullptr;
    if (!known) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) PropertyWatcher::AddRef() {
    return ++references_;
}

STDMETHODIMP_(ULONG) PropertyWatcher::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

STDMETHODIMP PropertyWatcher::PropertyChanged(_MorquilPropertySetId id) {
    {
        const std::lock_guard lock(mutex_);
        ++notifications_[id];
    }
    notified_.notify_all();
    return S_OK;
}

int PropertyWatcher::Notifications(_MorquilPropertySetId id) {
    const std::lock_guard lock(mutex_);
    return notifications_[id];
}

bool PropertyWatcher::Await(_MorquilPropertySetId id, std::chrono::seconds limit) {
    std::unique_lock lock(mutex_);
    return notified_.wait_for(lock, limit, [&] { return notifications_[id] > 0; });
}
