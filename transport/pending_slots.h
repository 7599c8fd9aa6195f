// Which messages wait where. Block tables are declared only: who queues one message reads the table of that one.
#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "protocol/message.h"
#include "protocol/sink.h"

namespace Morquil {

/// A slot whose messages are never sent: the device takes alignment from its own panel only.
template <class Message>
struct NeverSent {};

// clang-format off
/// The slots of the pending table in sending order; a slot's number is its place here, counted from 1.
using PendingSlots = std::tuple<
    TextProtocolMessage<MorquilDeviceChangeSet>,
    TextProtocolMessage<SupportedConversionsChangeSet>,
    TextProtocolMessage<VideoInputChangeSet>,
    TextProtocolMessage<VideoInputAvailabilityChangeSet>,
    TextProtocolMessage<VideoOutputChangeSet>,
    TextProtocolMessage<VideoOutputAvailabilityChangeSet>,
    TextProtocolMessage<VideoProcAmpChangeSet>,
    TextProtocolMessage<VideoProcAmpAvailabilityChangeSet>,
    TextProtocolMessage<VideoAdjustChangeSet>,
    TextProtocolMessage<VideoAdjustAvailabilityChangeSet>,
    TextProtocolMessage<NoiseReductionChangeSet>,
    TextProtocolMessage<NoiseReductionAvailabilityChangeSet>,
    TextProtocolMessage<TestPatternChangeSet>,
    TextProtocolMessage<TestPatternAvailabilityChangeSet>,
    TextProtocolMessage<VideoAdvancedChangeSet>,
    TextProtocolMessage<VideoAdvancedAvailabilityChangeSet>,
    TextProtocolMessage<AncillaryDataChangeSet>,
    TextProtocolMessage<AncillaryDataAvailabilityChangeSet>,
    TextProtocolMessage<GenlockChangeSet>,
    TextProtocolMessage<GenlockAvailabilityChangeSet>,
    TextProtocolMessage<VariableAspectRatioChangeSet>,
    TextProtocolMessage<VariableAspectRatioAvailabilityChangeSet>,
    TextProtocolMessage<AudioChangeSet>,
    TextProtocolMessage<AudioAvailabilityChangeSet>,
    TextProtocolMessage<Mode3DChangeSet>,
    TextProtocolMessage<Mode3DAvailabilityChangeSet>,
    NeverSent<TextProtocolMessage<AlignChangeSet>>,
    NeverSent<void>,
    TextProtocolMessage<NetworkConfigChangeSet>,
    TextProtocolMessage<DeviceFilenamesChangeSet>,
    TextProtocolMessage<PresetChangeSet>,
    TextProtocolMessage<PresetAvailabilityChangeSet>>;
// clang-format on

/// Where the messages of one type wait, and how a later one joins the one that waits.
struct PendingSlot {
    std::size_t index;
    void (*merge)(TextProtocolMessageBase& waiting, const TextProtocolMessageBase& later);
};

template <class Message, class Slot>
inline constexpr bool isSlotOf = std::is_same_v<Slot, Message> || std::is_same_v<Slot, NeverSent<Message>>;

/// The place of the slot of `Message`, or the number of slots.
template <class Message, std::size_t... slot>
constexpr std::size_t PendingSlotIndex(std::index_sequence<slot...>) {
    std::size_t found = sizeof...(slot);
    ((isSlotOf<Message, std::tuple_element_t<slot, PendingSlots>> ? found = slot : found), ...);
    return found;
}

/// The slot of `TextProtocolMessage<Set>`. Does not compile for a message that has none.
template <class Set>
constexpr PendingSlot PendingSlotOf() {
    constexpr std::size_t count = std::tuple_size_v<PendingSlots>;
    constexpr std::size_t index = PendingSlotIndex<TextProtocolMessage<Set>>(std::make_index_sequence<count>());
    static_assert(index < count, "the message has no slot");
    return {.index = index, .merge = [](TextProtocolMessageBase& waiting, const TextProtocolMessageBase& later) {
                Overwrite<Set>(static_cast<TextProtocolMessage<Set>&>(waiting),
                               static_cast<const TextProtocolMessage<Set>&>(later));
            }};
}

}  // namespace Morquil
