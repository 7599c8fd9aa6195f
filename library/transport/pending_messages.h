#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "core/lockable.h"
#include "core/thread_safety.h"
#include "delivery/receipts.h"
#include "protocol/table/message.h"
#include "transport/pending_slots.h"

namespace Morquil {

/// The messages that wait to be sent, at most one of each type. A later message merges into the pending one, and its
/// values replace the pending values.
class PendingMessages {
public:
    static constexpr std::size_t slotCount = pendingSlotCount;

    /// `receipts` follow the messages; they must outlive the object.
    explicit PendingMessages(Receipts& receipts) : receipts_(receipts) {}

    /// Returns: whether the message was put into an empty slot; otherwise it was merged into the pending one.
    /// Throws:  std::bad_alloc; nothing has changed.
    template <class Set>
    bool Add(std::unique_ptr<TextProtocolMessage<Set>> message) {
        return Add(PendingSlotOf<Set>(), std::move(message));
    }
    bool Add(PendingSlot slot, std::unique_ptr<TextProtocolMessageBase> message);

    /// Takes the first message in slot order; null when none is pending.
    std::unique_ptr<TextProtocolMessageBase> TakeNext();

private:
    Receipts& receipts_;
    QRN::Core::Lockable lock_;
    std::array<std::unique_ptr<TextProtocolMessageBase>, slotCount> slots_ GUARDED_BY(lock_);
};

}  // namespace Morquil
