#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "MorquilAPI.h"
#include "protocol/table/message.h"
#include "transport/pending_slots.h"

namespace Morquil {

/// Accepts messages for the device. It is the only part of the client that a sender of messages uses.
class IMessageQueue {
public:
    virtual ~IMessageQueue() = default;

    /// Queues a message, or merges it into a pending one of its type.
    /// Ownership: takes `message`.
    /// Threads:   any. Returns at once; the connection thread sends the message later.
    /// Returns:   S_OK, or E_FAIL when the connection thread could not be woken.
    template <class Set>
    HRESULT Queue(std::unique_ptr<TextProtocolMessage<Set>> message) {
        return QueueInSlot(PendingSlotOf<Set>(), std::move(message));
    }
    /// The same for a message of the block at this place of the table.
    HRESULT Queue(std::size_t place, std::unique_ptr<TextProtocolMessageBase> message) {
        return QueueInSlot(PendingSlotAt(place), std::move(message));
    }

protected:
    IMessageQueue() = default;
    IMessageQueue(const IMessageQueue&) = default;
    IMessageQueue& operator=(const IMessageQueue&) = default;

private:
    virtual HRESULT QueueInSlot(PendingSlot slot, std::unique_ptr<TextProtocolMessageBase> message) = 0;
};

}  // namespace Morquil
