#include "transport/pending_messages.h"

#include "core/lock.h"

namespace Morquil {

namespace {

template <class Slot>
constexpr bool isScanned = true;
template <class Message>
constexpr bool isScanned<NeverSent<Message>> = false;

template <class Slots>
constexpr std::array<bool, PendingMessages::slotCount> scannedSlots{};
template <class... Slots>
constexpr std::array<bool, PendingMessages::slotCount> scannedSlots<std::tuple<Slots...>>{isScanned<Slots>...};

}  // namespace

bool PendingMessages::Add(PendingSlot slot, std::unique_ptr<TextProtocolMessageBase> message) {
    QRN::Core::Lock lock(lock_);
    std::unique_ptr<TextProtocolMessageBase>& waiting = slots_[slot.index];
    if (waiting == nullptr) {
        waiting = std::move(message);
        return true;
    }
    slot.merge(*waiting, *message);
    return false;
}

std::unique_ptr<TextProtocolMessageBase> PendingMessages::TakeNext() {
    QRN::Core::Lock lock(lock_);
    for (std::size_t slot = 0; slot < slotCount; ++slot) {
        if (scannedSlots<PendingSlots>[slot] && slots_[slot] != nullptr) {
            return std::move(slots_[slot]);
        }
    }
    return nullptr;
}

}  // namespace Morquil
