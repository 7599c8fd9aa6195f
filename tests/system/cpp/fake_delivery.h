#pragma once

#include <mutex>
#include <optional>

#include "tests/system/cpp/fake_device.h"

namespace Morquil::Testing {

/// The delivery of one receipt, with the notifications that the test chooses.
class FakeDelivery final : public morquil::detail::HostObject<IMorquilDelivery> {
public:
    static constexpr UINT64 number = 7;

    HRESULT opened = S_OK;
    HRESULT marked = S_OK;
    std::function<void()> onMark = [] {};
    std::function<void()> onCancel = [] {};
    morquil::Pointer<IMorquilReceiptObserver> observer;
    bool isCancelled = false;

    STDMETHODIMP AddReportObserver(IMorquilReportObserver*) override { return S_OK; }
    STDMETHODIMP RemoveReportObserver(IMorquilReportObserver*) override { return S_OK; }
    STDMETHODIMP OpenReceipt(IMorquilReceiptObserver* added, _MorquilReceiptScope scope, UINT64* receipt) override {
        if (opened == S_OK && scope == morquilReceiptThisThread) {
            added->AddRef();
            observer = morquil::Pointer<IMorquilReceiptObserver>::Adopt(added);
            *receipt = number;
        }
        return opened;
    }
    STDMETHODIMP MarkReceipt(UINT64) override {
        onMark();
        return marked;
    }
    STDMETHODIMP CancelReceipt(UINT64 receipt) override {
        isCancelled = receipt == number;
        onCancel();
        return S_OK;
    }
    STDMETHODIMP GetSilence(UINT* milliseconds) override {
        *milliseconds = 1500;
        return opened;
    }
};

/// A device object that hands out a delivery.
class FakeDeliveringDevice final : public FakeDevice {
public:
    explicit FakeDeliveringDevice(morquil::Pointer<FakeDelivery> delivery) : delivery_(std::move(delivery)) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (IsEqualIID(iid, IID_IMorquilDelivery)) {
            return delivery_->QueryInterface(iid, object);
        }
        return FakeDevice::QueryInterface(iid, object);
    }

private:
    const morquil::Pointer<FakeDelivery> delivery_;
};

}  // namespace Morquil::Testing
