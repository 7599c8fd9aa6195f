#pragma once

#include <cstdint>
#include <memory>

#include "MorquilDelivery.h"
#include "core/thread.h"

namespace Morquil {

/// What one receipt covers and what has become of it. The lock of `Receipts` guards it.
struct Receipt {
    explicit Receipt(QRN::Core::ThreadId collectedThread) : thread(collectedThread) {}

    bool Collects(QRN::Core::ThreadId queueing) const { return thread == 0 || thread == queueing; }
    bool IsAnswered() const { return isMarked && unsent == 0 && unanswered == 0; }
    bool IsSettled() const { return IsAnswered() && unsettled == 0; }
    /// Whether its observer has not been notified of everything yet.
    bool HasNews() const { return isAnswerReported ? IsSettled() : IsAnswered(); }
    std::uint32_t Acknowledged() const { return unsettled + confirmed + adjusted; }

    std::uint64_t id = 0;
    /// The thread whose changes it collects; 0 for all threads.
    QRN::Core::ThreadId thread;
    bool isMarked = false;
    bool isAnswerReported = false;
    /// Settled or cancelled: no one waits for its messages any more.
    bool isOver = false;

    // Numbers of messages; each message is counted once.
    std::uint32_t kept = 0;  // never sent
    std::uint32_t unsent = 0;
    std::uint32_t unanswered = 0;
    std::uint32_t refused = 0;
    std::uint32_t unsettled = 0;  // acknowledged, but not reported yet
    std::uint32_t confirmed = 0;
    std::uint32_t adjusted = 0;
};

struct ObservedReceipt {
    ObservedReceipt(IMorquilReceiptObserver& receiver, QRN::Core::ThreadId thread)
        : receipt(std::make_shared<Receipt>(thread)) {
        receiver.AddRef();
        // If there is no memory for it, this has already released the reference.
        observer = {&receiver, [](IMorquilReceiptObserver* released) { released->Release(); }};
    }

    std::shared_ptr<Receipt> receipt;
    /// Owns one reference. Let go of it without a lock: the observer may call anything when it is released.
    std::shared_ptr<IMorquilReceiptObserver> observer;
};

}  // namespace Morquil
