#include "delivery/receipts.h"

#include <algorithm>
#include <new>
#include <utility>

#include "core/callback_scope.h"
#include "core/lock.h"
#include "core/thread.h"

namespace Morquil {

using QRN::Core::CallbackScope;
using QRN::Core::CurrentThreadId;
using QRN::Core::Lock;

class Receipts::Notification {
public:
    explicit Notification(Receipts& receipts) : receipts_(receipts) {}
    ~Notification() {
        if (isInProgress_) {
            Lock lock(receipts_.lock_);
            receipts_.notifications_.Remove(*this);
            receipts_.notified_.WakeAll();
        }
    }
    Notification(const Notification&) = delete;
    Notification& operator=(const Notification&) = delete;

    UINT64 Id() const { return numbers_.id; }

    /// Takes the oldest receipt that has news, if there is one with a number up to `lastId`.
    void TakeDue(UINT64 lastId) {
        Lock lock(receipts_.lock_);
        const auto first = receipts_.due_.begin();
        if (first == receipts_.due_.end() || first->first > lastId) {
            return;
        }
        Receipt& receipt = *first->second.receipt;
        event_ = receipt.isAnswerReported ? Event::Settled : Event::Answered;
        receipt.isAnswerReported = true;
        Begin(first->second);
        if (event_ == Event::Settled) {
            receipt.isOver = true;
            receipts_.due_.erase(first);
        } else if (!receipt.HasNews()) {
            receipts_.outstanding_.insert(receipts_.due_.extract(first));
        }
        receipts_.OnReceiptsEnded();
    }

    /// Takes any receipt, if there is one.
    void TakeLost() {
        Lock lock(receipts_.lock_);
        for (ReceiptMap* const receipts : {&receipts_.due_, &receipts_.outstanding_, &receipts_.collecting_}) {
            if (!isInProgress_ && !receipts->empty()) {
                event_ = Event::Lost;
                Begin(receipts->begin()->second);
                receipts->erase(receipts->begin());
            }
        }
        receipts_.OnReceiptsEnded();
    }

    bool IsInProgress() const { return isInProgress_; }

    /// Calls the observer and releases it. The lock must not be held.
    void Deliver() {
        // Also for the release: what an observer does when it is destroyed must not wait for this notification.
        const CallbackScope inCallback;
        switch (event_) {
            case Event::Answered:
                observer_->Answered(Id(), numbers_.Acknowledged(), numbers_.refused, numbers_.kept);
                break;
            case Event::Settled:
                observer_->Settled(Id(), numbers_.confirmed, numbers_.adjusted);
                break;
            case Event::Lost:
                observer_->Lost(Id(), numbers_.Acknowledged(), numbers_.refused, numbers_.unanswered, numbers_.unsent);
                break;
        }
        observer_.reset();
    }

    Notification* previous = nullptr;  ///< the list's own links
    Notification* next = nullptr;

private:
    enum class Event { Answered, Settled, Lost };

    void Begin(const ObservedReceipt& receipt) REQUIRES(receipts_.lock_) {
        numbers_ = *receipt.receipt;
        observer_ = receipt.observer;
        receipts_.notifications_.Add(*this);
        isInProgress_ = true;
    }

    Receipts& receipts_;
    bool isInProgress_ = false;
    Event event_ = Event::Answered;
    Receipt numbers_{0};
    std::shared_ptr<IMorquilReceiptObserver> observer_;
};

// ---- The host's side ------------------------------------------------------------------------------------------------

HRESULT Receipts::Open(IMorquilReceiptObserver* observer, _MorquilReceiptScope scope, UINT64* id) {
    if (observer == nullptr || id == nullptr) {
        return E_POINTER;
    }
    if (scope != morquilReceiptThisThread && scope != morquilReceiptAllThreads) {
        return E_INVALIDARG;
    }
    try {
        ObservedReceipt opened(*observer, scope == morquilReceiptThisThread ? CurrentThreadId() : 0);
        Lock lock(lock_);
        if (!isConnected_) {
            return E_FAIL;
        }
        const std::shared_ptr<Receipt> receipt = opened.receipt;
        collecting_.emplace(lastId_ + 1, std::move(opened));
        *id = receipt->id = ++lastId_;
        isActive_ = true;
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT Receipts::Mark(UINT64 id, bool& isDue) {
    Lock lock(lock_);
    const auto found = collecting_.find(id);
    if (found == collecting_.end()) {
        return S_FALSE;
    }
    Receipt& receipt = *found->second.receipt;
    receipt.isMarked = true;
    isDue = receipt.HasNews();
    (isDue ? due_ : outstanding_).insert(collecting_.extract(found));
    UpdateFlags();
    return S_OK;
}

HRESULT Receipts::Cancel(UINT64 id) {
    ReceiptMap::node_type cancelled;  // declared before the lock: released after it
    Lock lock(lock_);
    for (ReceiptMap* const receipts : {&collecting_, &outstanding_, &due_}) {
        if (cancelled.empty()) {
            cancelled = receipts->extract(id);
        }
    }
    if (!cancelled.empty()) {
        cancelled.mapped().receipt->isOver = true;
        OnReceiptsEnded();
    }
    AwaitNotificationsOf(id);
    return cancelled.empty() ? S_FALSE : S_OK;
}

/// Inside a callback it does not wait: that callback may be the one.
void Receipts::AwaitNotificationsOf(UINT64 id) {
    if (CallbackScope::OnThisThread()) {
        return;
    }
    while (IsNotifying(id)) {
        notified_.Wait(lock_);
    }
}

bool Receipts::IsNotifying(UINT64 id) const {
    const Notification* notification = notifications_.First();
    while (notification != nullptr && notification->Id() != id) {
        notification = notification->next;
    }
    return notification != nullptr;
}

// ---- The queue's side -----------------------------------------------------------------------------------------------

Receipts::FollowedList::iterator Receipts::FindWaiting(std::size_t slot) {
    return std::find_if(waiting_.begin(), waiting_.end(),
                        [slot](const Followed& message) { return message.slot == slot; });
}

void Receipts::Prepare(std::size_t slot) {
    if (!isActive_) {
        return;
    }
    Lock lock(lock_);
    FollowedList added;
    auto message = FindWaiting(slot);
    if (message == waiting_.end()) {
        message = added.emplace(added.end());
        message->slot = slot;
    }
    message->DetachEnded();
    message->receipts.reserve(message->receipts.size() + collecting_.size());
    waiting_.splice(waiting_.end(), added);
}

/// Another thread may have opened a receipt since `Prepare`. The change was on its way before, so it need not belong to
/// that one.
void Receipts::OnQueued(std::size_t slot, bool isSent) {
    if (!isActive_) {
        return;
    }
    const QRN::Core::ThreadId thread = CurrentThreadId();
    Lock lock(lock_);
    const auto message = FindWaiting(slot);
    if (message == waiting_.end()) {
        return;
    }
    for (const auto& [id, opened] : collecting_) {
        if (opened.receipt->Collects(thread) && message->receipts.size() < message->receipts.capacity()) {
            message->Attach(opened.receipt, isSent);
        }
    }
}

void Receipts::Followed::Attach(const std::shared_ptr<Receipt>& receipt, bool isSent) {
    if (std::find(receipts.begin(), receipts.end(), receipt) == receipts.end()) {
        receipts.push_back(receipt);
        ++(isSent ? receipt->unsent : receipt->kept);
    }
}

void Receipts::Followed::DetachEnded() {
    std::erase_if(receipts, [](const std::shared_ptr<Receipt>& receipt) { return receipt->isOver; });
}

bool Receipts::Followed::IsAwaited() const {
    return std::any_of(receipts.begin(), receipts.end(),
                       [](const std::shared_ptr<Receipt>& receipt) { return !receipt->isOver; });
}

void Receipts::OnTaken(std::size_t slot) {
    if (!isActive_) {
        return;
    }
    Lock lock(lock_);
    taken_.clear();
    const auto message = FindWaiting(slot);
    if (message == waiting_.end()) {
        return;
    }
    taken_.splice(taken_.end(), waiting_, message);
    for (const std::shared_ptr<Receipt>& receipt : message->receipts) {
        --receipt->unsent;
        ++receipt->unanswered;
    }
}

// ---- The connection's side ------------------------------------------------------------------------------------------

void Receipts::OnConnected() {
    Lock lock(lock_);
    isConnected_ = true;
}

void Receipts::OnSending(std::uint64_t number, std::string_view text) {
    Lock lock(lock_);
    if (!taken_.empty()) {
        taken_.front().number = number;
        taken_.front().lines = AwaitedLines(text, taken_.front().slot, isReported_);
        unanswered_.splice(unanswered_.end(), taken_);
    }
}

void Receipts::OnAnswered(std::uint64_t number, bool positive) {
    if (!isActive_) {
        return;
    }
    Lock lock(lock_);
    while (!unanswered_.empty() && unanswered_.front().number <= number) {
        Answer(unanswered_.begin(), positive);
    }
    SettleReported();
    LimitUnreported();
}

void Receipts::Answer(FollowedList::iterator message, bool positive) {
    for (const std::shared_ptr<Receipt>& receipt : message->receipts) {
        --receipt->unanswered;
        ++(positive ? receipt->unsettled : receipt->refused);
    }
    Update(*message);
    if (positive) {
        unsettled_.splice(unsettled_.end(), unanswered_, message);
    } else {
        unanswered_.erase(message);
    }
}

void Receipts::OnReport(std::size_t slot, std::string_view text) {
    if (!isActive_) {
        return;
    }
    Lock lock(lock_);
    TakeDifferences(slot, text, TakeRepetition(slot, text));
    SettleReported();
}

/// A report belongs to the first message of which it repeats awaited lines.
/// Returns: the number of that message, or 0.
std::uint64_t Receipts::TakeRepetition(std::size_t slot, std::string_view report) {
    for (FollowedList* const messages : {&unsettled_, &unanswered_}) {
        for (Followed& message : *messages) {
            if (message.slot == slot && message.lines.Compare(report) == AwaitedLines::Comparison::Same) {
                message.lines.RemoveReported(report);
                return message.number;
            }
        }
    }
    return 0;
}

/// What was sent before the repeated message has been superseded by it. A report that repeats no message differs from
/// the first that was acknowledged. While a message has no answer, a different value is older than the message.
void Receipts::TakeDifferences(std::size_t slot, std::string_view report, std::uint64_t repeated) {
    for (Followed& message : unsettled_) {
        if (message.slot == slot && message.lines.Compare(report) == AwaitedLines::Comparison::Different &&
            (repeated == 0 || message.number < repeated)) {
            message.isAdjusted = true;
            message.lines.RemoveReported(report);
            if (repeated == 0) {
                return;
            }
        }
    }
}

void Receipts::SettleReported() {
    for (auto message = unsettled_.begin(); message != unsettled_.end();) {
        if (message->lines.IsEmpty()) {
            Settle(*message);
            message = unsettled_.erase(message);
        } else {
            ++message;
        }
    }
}

/// Allocates nothing and usually looks at nothing.
void Receipts::LimitUnreported() {
    if (unsettled_.size() > unreportedLimit) {
        const auto oldest = std::find_if(unsettled_.begin(), unsettled_.end(),
                                         [](const Followed& message) { return !message.IsAwaited(); });
        if (oldest != unsettled_.end()) {
            unsettled_.erase(oldest);
        }
    }
}

void Receipts::Settle(const Followed& message) {
    for (const std::shared_ptr<Receipt>& receipt : message.receipts) {
        --receipt->unsettled;
        ++(message.isAdjusted ? receipt->adjusted : receipt->confirmed);
    }
    Update(message);
}

/// The numbers of the message's receipts have changed.
void Receipts::Update(const Followed& message) {
    for (const std::shared_ptr<Receipt>& receipt : message.receipts) {
        const auto found = outstanding_.find(receipt->id);
        if (found != outstanding_.end() && receipt->HasNews()) {
            due_.insert(outstanding_.extract(found));
        }
    }
    UpdateFlags();
}

/// Receipts may have ended. After the last, no message is followed any more.
void Receipts::OnReceiptsEnded() {
    UpdateFlags();
    if (!isActive_) {
        for (FollowedList* const messages : {&waiting_, &taken_, &unanswered_, &unsettled_}) {
            messages->clear();
        }
    }
}

void Receipts::UpdateFlags() {
    hasDue_ = !due_.empty();
    isActive_ = !collecting_.empty() || !outstanding_.empty() || !due_.empty();
}

// ---- Notifications --------------------------------------------------------------------------------------------------

void Receipts::NotifyDue() {
    if (!hasDue_) {
        return;
    }
    const UINT64 lastId = LastId();
    bool isDue = true;
    while (isDue) {
        Notification notification(*this);
        notification.TakeDue(lastId);
        isDue = notification.IsInProgress();
        if (isDue) {
            notification.Deliver();
        }
    }
}

UINT64 Receipts::LastId() const {
    Lock lock(lock_);
    return lastId_;
}

void Receipts::OnLost() {
    {
        Lock lock(lock_);
        isConnected_ = false;
    }
    NotifyDue();
    bool isLost = true;
    while (isLost) {
        Notification notification(*this);
        notification.TakeLost();
        isLost = notification.IsInProgress();
        if (isLost) {
            notification.Deliver();
        }
    }
}

void Receipts::Silence() {
    ReceiptMap dropped[3];  // released after the lock
    Lock lock(lock_);
    isConnected_ = false;
    collecting_.swap(dropped[0]);
    outstanding_.swap(dropped[1]);
    due_.swap(dropped[2]);
    OnReceiptsEnded();
}

}  // namespace Morquil
