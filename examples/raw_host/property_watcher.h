#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

#include "MorquilAPI.h"

/// An object of the host that the library notifies of changes. It counts the notifications, and wakes waiting threads.
class PropertyWatcher final : public IMorquilPropertyObserver {
public:
    /// Starts with one reference, which belongs to its creator.
    PropertyWatcher() = default;
    PropertyWatcher(const PropertyWatcher&) = delete;
    PropertyWatcher& operator=(const PropertyWatcher&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    /// Called by the library, on one of its threads.
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) override;

    /// The number of notifications of this property set.
    int Notifications(_MorquilPropertySetId id);

    /// Waits for a notification of this property set, and gives up after `limit`. Returns whether there was one.
    bool Await(_MorquilPropertySetId id, std::chrono::seconds limit);

private:
    ~PropertyWatcher() = default;

    std::atomic<ULONG> references_{1};
    std::mutex mutex_;
    std::condition_variable notified_;
    std::map<_MorquilPropertySetId, int> notifications_;
};
