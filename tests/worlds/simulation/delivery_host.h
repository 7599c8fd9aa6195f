#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "MorquilDelivery.h"
#include "device/device.h"
#include "tests/worlds/simulation/counted_observer.h"
#include "tests/worlds/simulation/delivering_device.h"
#include "tests/worlds/simulation/dice.h"
#include "tests/worlds/simulation/expected_receipts.h"
#include "tests/worlds/simulation/expected_reports.h"
#include "tests/worlds/simulation/trace.h"

namespace Morquil::Testing::Worlds {

/// A host that sets values and follows them, also inside its callbacks. Holds one reference to the device object until
/// it releases it.
class DeliveryHost {
public:
    DeliveryHost(Dice& dice, Trace& trace, Values& values, ExpectedReceipts& receipts, ExpectedReports& reports);

    /// Takes over the reference and connects.
    void Connect(CMorquilDevice* device);
    bool HasDevice() const { return device_ != nullptr; }
    /// One call of any kind.
    void Act();
    void Disconnect();
    void ReleaseDevice();
    /// The connection has ended, or is about to.
    void Ended() { hasEnded_ = true; }
    bool HasEnded() const { return hasEnded_; }
    void CheckObserversReleased();

private:
    class ReceiptWatcher final : public CountedObserver<IMorquilReceiptObserver> {
    public:
        STDMETHODIMP Answered(UINT64 receipt, UINT acknowledged, UINT refused, UINT kept) override;
        STDMETHODIMP Settled(UINT64 receipt, UINT confirmed, UINT adjusted) override;
        STDMETHODIMP Lost(UINT64 receipt, UINT acknowledged, UINT refused, UINT unanswered, UINT unsent) override;
        DeliveryHost* host = nullptr;
    };
    class ReportWatcher final : public CountedObserver<IMorquilReportObserver> {
    public:
        STDMETHODIMP BlockReported(_MorquilPropertySetId set, _MorquilReportKind kind,
                                   _MorquilReportOrigin origin) override;
        DeliveryHost* host = nullptr;
        std::size_t number = 0;
    };
    class Call;

    HRESULT InsideCallback();
    bool IsInCallback() { return callbacks_[Scheduler::Instance().Current()] > 0; }
    bool OthersAreInCalls() const;
    void Set();
    void LoadAlignment();
    void Open();
    void Mark();
    void Cancel();
    void ChangeReportObservers();
    UINT64 AnyReceipt();
    IMorquilDelivery* Delivery();

    Dice& dice_;
    Trace& trace_;
    Values& values_;
    ExpectedReceipts& receipts_;
    ExpectedReports& reports_;
    CMorquilDevice* device_ = nullptr;
    bool hasEnded_ = false;
    std::vector<UINT64> opened_;
    std::array<ReceiptWatcher, 2> receiptWatchers_;
    std::array<ReportWatcher, ExpectedReports::watcherCount> reportWatchers_;
    std::map<QRN::Core::ThreadId, int> calls_;      ///< of the library, in progress
    std::map<QRN::Core::ThreadId, int> callbacks_;  ///< in progress
};

}  // namespace Morquil::Testing::Worlds
