#include "device/delivery.h"

#include "device/device.h"

using Morquil::Receipts;

STDMETHODIMP CMorquilDelivery::QueryInterface(REFIID iid, void** out) {
    return device_.QueryInterface(iid, out);
}

STDMETHODIMP_(ULONG) CMorquilDelivery::AddRef() {
    return device_.AddRef();
}

STDMETHODIMP_(ULONG) CMorquilDelivery::Release() {
    return device_.Release();
}

STDMETHODIMP CMorquilDelivery::AddReportObserver(IMorquilReportObserver* observer) {
    hasReportObservers_ = true;
    return reportObservers_.Add(observer);
}

STDMETHODIMP CMorquilDelivery::RemoveReportObserver(IMorquilReportObserver* observer) {
    return reportObservers_.Remove(observer);
}

STDMETHODIMP CMorquilDelivery::OpenReceipt(IMorquilReceiptObserver* observer, _MorquilReceiptScope scope,
                                           UINT64* receipt) {
    return device_.MessageReceipts().Open(observer, scope, receipt);
}

STDMETHODIMP CMorquilDelivery::MarkReceipt(UINT64 receipt) {
    Receipts& receipts = device_.MessageReceipts();
    bool isDue = false;
    const HRESULT marked = receipts.Mark(receipt, isDue);
    if (isDue && !device_.WakeConnection()) {
        receipts.Cancel(receipt);
        return E_FAIL;
    }
    return marked;
}

STDMETHODIMP CMorquilDelivery::CancelReceipt(UINT64 receipt) {
    return device_.MessageReceipts().Cancel(receipt);
}

STDMETHODIMP CMorquilDelivery::GetSilence(UINT* milliseconds) {
    return milliseconds == nullptr ? E_POINTER : device_.GetSilence(*milliseconds);
}

void CMorquilDelivery::Report(_MorquilPropertySetId propertySet, _MorquilReportKind kind, _MorquilReportOrigin origin) {
    Morquil::ObserverList<IMorquilReportObserver>::Round round(reportObservers_);
    round.CallEach([&](IMorquilReportObserver& observer) { observer.BlockReported(propertySet, kind, origin); });
}
