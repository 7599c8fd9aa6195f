#pragma once

#include <atomic>

#include "MorquilDelivery.h"
#include "observers/observer_list.h"

class CMorquilDevice;

/// The interface through which a host follows what becomes of its changes. References to it are counted by the device
/// that owns it.
class CMorquilDelivery final : public IMorquilDelivery {
public:
    explicit CMorquilDelivery(CMorquilDevice& device) : device_(device) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP AddReportObserver(IMorquilReportObserver* observer) override;
    STDMETHODIMP RemoveReportObserver(IMorquilReportObserver* observer) override;
    STDMETHODIMP OpenReceipt(IMorquilReceiptObserver* observer, _MorquilReceiptScope scope, UINT64* receipt) override;
    STDMETHODIMP MarkReceipt(UINT64 receipt) override;
    STDMETHODIMP CancelReceipt(UINT64 receipt) override;
    STDMETHODIMP GetSilence(UINT* milliseconds) override;

    /// Whether a report observer was ever added. Cheap enough to ask for every block.
    bool HasReportObservers() const { return hasReportObservers_; }
    /// Notifies the report observers. On the connection thread.
    void Report(_MorquilPropertySetId propertySet, _MorquilReportKind kind, _MorquilReportOrigin origin);
    /// Stops all reports. One in progress ends after its current call.
    void Silence() { reportObservers_.Silence(); }

private:
    CMorquilDevice& device_;
    std::atomic<bool> hasReportObservers_ = false;
    Morquil::ObserverList<IMorquilReportObserver> reportObservers_;
};
