#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>

#include "MorquilAPI.h"

/// An object of the host that the library tells of changes. It counts what it is told, and wakes whoever waits.
class PropertyWatcher final : public IMorquilPropertyObserver {
public:
    /// Starts with one reference, which belongs to whoever made it.
    PropertyWatcher() = default;
    PropertyWatcher(const PropertyWatcher&) = delete;
    PropertyWatcher& operator=(const PropertyWatcher&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    /// Called by the library, on a thread of its own.
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) override;

    /// How often a change of this property set was told.
    int TimesTold(_MorquilPropertySetId id);

    /// Waits until `happened` answers yes, and gives up after `limit`. Returns whether it happened.
    bool WaitUntil(const std::function<bool()>& happened, std::chrono::seconds limit);

private:
    ~PropertyWatcher() = default;

    std::atomic<ULONG> references_{1};
    std::mutex mutex_;
    std::condition_variable told_;
    std::map<_MorquilPropertySetId, int> timesTold_;
};
