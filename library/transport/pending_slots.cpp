#include "transport/pending_slots.h"

#include <array>
#include <type_traits>

#include "protocol/blocks/all.h"

namespace Morquil {

namespace {

constexpr std::array<PendingSlot, blockCount> slots = [] {
    std::array<PendingSlot, blockCount> all{};
    ForEachBlock([&]<class Description>() {
        if constexpr (factsOf<Description>.slot != 0 && std::is_same_v<ChangeSetOf<Description>, Description>) {
            all[placeOf<Description>] = PendingSlotOf<Description>();
        }
    });
    return all;
}();

}  // namespace

PendingSlot PendingSlotAt(std::size_t place) {
    return slots[place];
}

}  // namespace Morquil
