#include "transport/pending_messages.h"

#include "core/lock.h"

namespace Morquil {

namespace {

/// The slots whose messages are sent.
constexpr std::array<bool, PendingMessages::slotCount> scannedSlots = [] {
    std::array<bool, PendingMessages::slotCount> scanned{};
    for (const BlockFacts& facts : factsByPlace) {
        if (facts.isSent) {
            scanned[facts.slot - 1] = true;
        }
    }
    return scanned;
}();

/// The slots of messages that hosts queue. The library itself requests what a device offers.
constexpr std::array<bool, PendingMessages::slotCount> hostSlots = [] {
    std::array<bool, PendingMessages::slotCount> hosts{};
    ForEachBlock<BlockRole::Settings>([&]<class Description>() { hosts[factsOf<Description>.slot - 1] = true; });
    return hosts;
}();

}  // namespace

bool PendingMessages::Add(PendingSlot slot, std::unique_ptr<TextProtocolMessageBase> message) {
    QRN::Core::Lock lock(lock_);
    const bool isHosts = hostSlots[slot.index];
    if (isHosts) {
        receipts_.Prepare(slot.index);
    }
    std::unique_ptr<TextProtocolMessageBase>& waiting = slots_[slot.index];
    const bool isFirst = waiting == nullptr;
    if (isFirst) {
        waiting = std::move(message);
    } else {
        slot.merge(*waiting, *message);
    }
    if (isHosts) {
        receipts_.OnQueued(slot.index, scannedSlots[slot.index]);
    }
    return isFirst;
}

std::unique_ptr<TextProtocolMessageBase> PendingMessages::TakeNext() {
    QRN::Core::Lock lock(lock_);
    for (std::size_t slot = 0; slot < slotCount; ++slot) {
        if (scannedSlots[slot] && slots_[slot] != nullptr) {
            receipts_.OnTaken(slot);
            return std::move(slots_[slot]);
        }
    }
    return nullptr;
}

}  // namespace Morquil
