#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "MorquilDelivery.h"

/// An object of the host that the library notifies of what became of its changes.
class ReceiptWatcher final : public IMorquilReceiptObserver {
public:
    /// Starts with one reference, which belongs to its creator.
    ReceiptWatcher() = default;
    ReceiptWatcher(const ReceiptWatcher&) = delete;
    ReceiptWatcher& operator=(const ReceiptWatcher&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    /// Called by the library, on one of its threads.
    STDMETHODIMP Answered(UINT64 receipt, UINT acknowledged, UINT refused, UINT kept) override;
    STDMETHODIMP Settled(UINT64 receipt, UINT confirmed, UINT adjusted) override;
    STDMETHODIMP Lost(UINT64 receipt, UINT acknowledged, UINT refused, UINT unanswered, UINT unsent) override;

    /// Waits until the device has reported or refused everything, and gives up after `limit`. Returns what became of
    /// the changes, in words: "applied", "refused", "adjusted", "lost" or "timed out".
    const char* Await(std::chrono::seconds limit);

private:
    ~ReceiptWatcher() = default;
    void End(const char* outcome);

    std::atomic<ULONG> references_{1};
    std::mutex mutex_;
    std::condition_variable ended_;
    UINT refused_ = 0;
    const char* outcome_ = nullptr;
};
