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

bool PropertyWatcher::WaitUntil(const std::function<bool()>& happened, std::chrono::seconds limit) {
    // A host is not notified of its own changes: the device's confirmation simply appears in the getters. So this
    // checks after every notification, and every few milliseconds. The lock is not held during the check: `happened`
    // may call the library, and the library may call this object.
    constexpr std::chrono::milliseconds betweenChecks{5};
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!happened()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::unique_lock lock(mutex_);
        notified_.wait_for(lock, betweenChecks);
    }
    return true;
}
