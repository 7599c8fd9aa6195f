#include "transport/pending_messages.h"

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
