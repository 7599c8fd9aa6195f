// The receipts of changes: from the library's notifications to an outcome.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <utility>

#include "morquil/library.hpp"
#include "morquil/observers.hpp"
#include "morquil/outcome.hpp"

namespace morquil::detail {

/// Collects what the library reports about one receipt, and passes on its outcome.
class ReceiptObserver final : public HostObject<IMorquilReceiptObserver> {
public:
    using Handler = std::function<void(const Outcome&)>;

    /// `ended` is called once, on the library's thread.
    explicit ReceiptObserver(Handler ended) : ended_(std::move(ended)) {}

    STDMETHODIMP Answered(UINT64, UINT acknowledged, UINT refused, UINT kept) noexcept override {
        const std::lock_guard lock(mutex_);
        outcome_.acknowledged = acknowledged;
        outcome_.refused = refused;
        outcome_.kept = kept;
        return S_OK;
    }
    STDMETHODIMP Settled(UINT64, UINT confirmed, UINT adjusted) noexcept override {
        const CallbackScope scope;
        Outcome outcome = SoFar();
        outcome.confirmed = confirmed;
        outcome.adjusted = adjusted;
        outcome.result = ResultOf(outcome, adjusted != 0 ? Result::Adjusted : Result::Applied);
        ended_(outcome);
        return S_OK;
    }
    STDMETHODIMP Lost(UINT64, UINT acknowledged, UINT refused, UINT unanswered, UINT unsent) noexcept override {
        const CallbackScope scope;
        Outcome outcome = SoFar();
        outcome.acknowledged = acknowledged;
        outcome.refused = refused;
        outcome.unanswered = unanswered;
        outcome.unsent = unsent;
        ended_(outcome);
        return S_OK;
    }

    /// The outcome if nothing more is reported.
    Outcome TimedOut() const {
        Outcome outcome = SoFar();
        outcome.result = ResultOf(outcome, Result::TimedOut);
        return outcome;
    }

private:
    Outcome SoFar() const {
        const std::lock_guard lock(mutex_);
        return outcome_;
    }

    static Result ResultOf(const Outcome& outcome, Result otherwise) {
        return outcome.refused != 0 ? Result::Refused : outcome.kept != 0 ? Result::NotSent : otherwise;
    }

    const Handler ended_;
    mutable std::mutex mutex_;
    Outcome outcome_;
};

/// One receipt, which is cancelled at the end of its scope.
class Receipt {
public:
    /// Collects from here on the changes of the calling thread. Without a connection there is no receipt.
    Receipt(IMorquilDevice* device, ReceiptObserver* observer, const char* call)
        : delivery_(AskForDelivery<IMorquilDelivery>(device, call)) {
        const HRESULT result = delivery_->OpenReceipt(observer, morquilReceiptThisThread, &number_);
        if (result != E_FAIL) {
            Check(call, result, CallKind::Set);
        }
    }
    Receipt(const Receipt&) = delete;
    Receipt& operator=(const Receipt&) = delete;
    ~Receipt() { Cancel(); }

    bool IsOpen() const { return number_ != 0; }

    /// Everything that is to be covered has been queued. A loss may already have been reported.
    void Mark(const char* call) const { Check(call, delivery_->MarkReceipt(number_), CallKind::Set); }

    /// It continues after the end of this object.
    void LetGo() { number_ = 0; }

    /// Outside a callback, nothing is reported any more when this returns.
    void Cancel() {
        if (number_ != 0) {
            delivery_->CancelReceipt(std::exchange(number_, 0));
        }
    }

private:
    Pointer<IMorquilDelivery> delivery_;
    UINT64 number_ = 0;
};

/// A promise of an outcome that is always kept: a receipt that is dropped without a word, because its device no longer
/// exists, is lost.
class OutcomePromise {
public:
    OutcomePromise() = default;
    OutcomePromise(const OutcomePromise&) = delete;
    OutcomePromise& operator=(const OutcomePromise&) = delete;
    ~OutcomePromise() {
        if (!isKept_) {
            promise_.set_value(Outcome());
        }
    }

    std::future<Outcome> Future() { return promise_.get_future(); }
    void Keep(const Outcome& outcome) {
        isKept_ = true;
        promise_.set_value(outcome);
    }

private:
    std::promise<Outcome> promise_;
    bool isKept_ = false;
};

/// Waits for the outcome, and gives up after `limit`.
inline Outcome AwaitOutcome(std::future<Outcome>& future, std::chrono::milliseconds limit, Receipt& receipt,
                            const ReceiptObserver& observer) {
    // A clock cannot count to the largest numbers.
    constexpr std::chrono::milliseconds none{0};
    constexpr std::chrono::milliseconds year = std::chrono::hours(24 * 365);
    const auto isReadyWithin = [&](std::chrono::milliseconds time) {
        return future.wait_for(time) == std::future_status::ready;
    };
    if (!isReadyWithin(std::clamp(limit, none, year))) {
        receipt.Cancel();
        if (!isReadyWithin(none)) {
            return observer.TimedOut();
        }
    }
    return future.get();
}

/// For calls that wait.
inline void ExpectNoCallback(const char* call) {
    if (CallbackScope::IsInside()) {
        throw WouldDeadlock(
            call, E_UNEXPECTED,
            "it waits for the library's thread, and this handler runs on it: use ApplyAsync, or run the "
            "handler on another thread with an executor");
    }
}

}  // namespace morquil::detail
