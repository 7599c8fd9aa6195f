#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "MorquilDelivery.h"
#include "core/condition.h"
#include "core/intrusive_list.h"
#include "core/lockable.h"
#include "core/thread_safety.h"
#include "delivery/awaited_lines.h"
#include "delivery/receipt.h"

namespace Morquil {

/// The receipts of one connection: follows the messages that they cover from the queue to the device's report, and
/// notifies their observers. Sends nothing and knows no specific block; a message is known by its slot in the queue.
///
/// While there is no receipt, all of this costs one look at a flag.
///
/// A device answers messages and pings in the order in which they were sent. So each of them has a number, counted from
/// 1, and the device's n-th answer belongs to number n.
class Receipts {
public:
    /// How many acknowledged messages that no receipt waits for are followed until the device reports them, so that
    /// their reports are not taken for those of later messages. Beyond that the oldest is forgotten.
    static constexpr std::size_t unreportedLimit = 4096;

    explicit Receipts(AwaitedLines::IsReported isReported) : isReported_(isReported) {}
    Receipts(const Receipts&) = delete;
    Receipts& operator=(const Receipts&) = delete;

    // The host's side. Threads: any. Results are those of `IMorquilDelivery`.

    HRESULT Open(IMorquilReceiptObserver* observer, _MorquilReceiptScope scope, UINT64* id);
    /// `isDue`: whether its observer has to be notified of something now. Then the connection has to be woken.
    HRESULT Mark(UINT64 id, bool& isDue);
    HRESULT Cancel(UINT64 id);

    // The queue's side. The caller holds the queue's lock, so that the queue and the receipts never disagree.

    /// A change is about to be put into the slot, or to be merged into the message that waits there: provides the
    /// memory that `OnQueued` needs.
    /// Throws: std::bad_alloc; nothing has changed.
    void Prepare(std::size_t slot);
    /// It has been put there. Without `isSent` messages stay in the slot forever.
    void OnQueued(std::size_t slot, bool isSent);
    /// The message in the slot has been taken to be sent.
    void OnTaken(std::size_t slot);

    // The connection's side. On the connection thread.

    /// From now on receipts can be opened.
    void OnConnected();
    /// Whether `OnSending` and `OnReport` want to be called.
    bool IsActive() const { return isActive_; }
    /// The message taken last is sent with this number.
    /// Throws: std::bad_alloc.
    void OnSending(std::uint64_t number, std::string_view text);
    /// The device has answered everything up to `number`, the last of it with ACK if `positive`.
    void OnAnswered(std::uint64_t number, bool positive);
    /// The device has reported the block whose messages wait in `slot`.
    void OnReport(std::size_t slot, std::string_view text);

    /// Calls the observers of the receipts that were answered or settled. What is opened meanwhile waits for the next
    /// call: a host that opens a receipt in each callback must not keep the connection from its work.
    void NotifyDue();

    /// The connection has ended: notifies the observers of all receipts. None can be opened any more. Allocates
    /// nothing. Threads: any.
    void OnLost();
    /// Drops all receipts without a notification. None can be opened any more.
    /// Threads: any.
    void Silence();

private:
    /// A message that receipts cover.
    struct Followed {
        void Attach(const std::shared_ptr<Receipt>& receipt, bool isSent);
        void DetachEnded();
        bool IsAwaited() const;

        std::size_t slot = 0;
        std::uint64_t number = 0;
        bool isAdjusted = false;
        AwaitedLines lines;
        std::vector<std::shared_ptr<Receipt>> receipts;
    };
    using FollowedList = std::list<Followed>;
    using ReceiptMap = std::map<UINT64, ObservedReceipt>;

    /// A notification in progress, on the stack of its thread. `Cancel` waits for it.
    class Notification;

    UINT64 LastId() const;
    void AwaitNotificationsOf(UINT64 id) REQUIRES(lock_);
    bool IsNotifying(UINT64 id) const REQUIRES(lock_);
    FollowedList::iterator FindWaiting(std::size_t slot) REQUIRES(lock_);
    void Answer(FollowedList::iterator message, bool positive) REQUIRES(lock_);
    std::uint64_t TakeRepetition(std::size_t slot, std::string_view report) REQUIRES(lock_);
    void TakeDifferences(std::size_t slot, std::string_view report, std::uint64_t repeated) REQUIRES(lock_);
    void SettleReported() REQUIRES(lock_);
    void LimitUnreported() REQUIRES(lock_);
    void Settle(const Followed& message) REQUIRES(lock_);
    void Update(const Followed& message) REQUIRES(lock_);
    void OnReceiptsEnded() REQUIRES(lock_);
    void UpdateFlags() REQUIRES(lock_);

    const AwaitedLines::IsReported isReported_;
    std::atomic<bool> isActive_ = false;
    std::atomic<bool> hasDue_ = false;

    mutable QRN::Core::Lockable lock_;
    QRN::Core::Condition notified_;
    bool isConnected_ GUARDED_BY(lock_) = false;
    UINT64 lastId_ GUARDED_BY(lock_) = 0;
    QRN::Core::IntrusiveList<Notification> notifications_ GUARDED_BY(lock_);

    // The receipts by their state; each is in one map. Moving one to another map allocates nothing.
    ReceiptMap collecting_ GUARDED_BY(lock_);   // not marked yet
    ReceiptMap outstanding_ GUARDED_BY(lock_);  // marked
    ReceiptMap due_ GUARDED_BY(lock_);          // marked, and has news

    // The messages by their state, in the order of sending. All empty while there is no receipt: what is not followed
    // from the queue to the report must not be compared with anything.
    FollowedList waiting_ GUARDED_BY(lock_);     // in the queue
    FollowedList taken_ GUARDED_BY(lock_);       // at most one, about to be sent
    FollowedList unanswered_ GUARDED_BY(lock_);  // sent
    FollowedList unsettled_ GUARDED_BY(lock_);   // acknowledged
};

}  // namespace Morquil
