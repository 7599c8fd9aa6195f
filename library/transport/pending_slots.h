// Which message waits in which slot, from the block table.
#pragma once

#include <algorithm>
#include <cstddef>

#include "protocol/block_table.h"
#include "protocol/table/message.h"

namespace Morquil {

inline constexpr std::size_t pendingSlotCount = [] {
    std::size_t last = 0;
    for (const BlockFacts& facts : factsByPlace) {
        last = std::max(last, facts.slot);
    }
    return last;
}();

/// The slot in which messages of one type wait, and how a later message merges into the pending one.
struct PendingSlot {
    std::size_t index;
    void (*merge)(TextProtocolMessageBase& waiting, const TextProtocolMessageBase& later);
};

/// The slot of `TextProtocolMessage<Set>`. Does not compile for a message without a slot.
template <class Set>
constexpr PendingSlot PendingSlotOf() {
    static_assert(factsOf<Set>.slot != 0, "the message has no slot");
    return {.index = factsOf<Set>.slot - 1,
            .merge = [](TextProtocolMessageBase& waiting, const TextProtocolMessageBase& later) {
                Overwrite<Set>(static_cast<TextProtocolMessage<Set>&>(waiting),
                               static_cast<const TextProtocolMessage<Set>&>(later));
            }};
}

/// The same for a block that is known only by its place in the table. It must have a slot.
PendingSlot PendingSlotAt(std::size_t place);

}  // namespace Morquil
