#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

#include "core/lock.h"
#include "core/lockable.h"
#include "core/thread_safety.h"
#include "protocol/blocks/all.h"
#include "protocol/message.h"

namespace Morquil {

/// A slot whose messages wait for ever: the device takes alignment from its own panel only.
template <class Message>
struct NeverSent {};

/// The slots of the pending table in sending order; a slot's number is its place here, counted from 1.
using PendingSlots =
    std::tuple<MorquilDeviceMessage, SupportedConversionsMessage, VideoInputMessage, VideoInputAvailabilityMessage,
               VideoOutputMessage, VideoOutputAvailabilityMessage, VideoProcAmpMessage, VideoProcAmpAvailabilityMessage,
               VideoAdjustMessage, VideoAdjustAvailabilityMessage, NoiseReductionMessage,
               NoiseReductionAvailabilityMessage, TestPatternMessage, TestPatternAvailabilityMessage,
               VideoAdvancedMessage, VideoAdvancedAvailabilityMessage, AncillaryDataMessage,
               AncillaryDataAvailabilityMessage, GenlockMessage, GenlockAvailabilityMessage, VariableAspectRatioMessage,
               VariableAspectRatioAvailabilityMessage, AudioMessage, AudioAvailabilityMessage, Mode3DMessage,
               Mode3DAvailabilityMessage, NeverSent<AlignMessage>, NeverSent<void>, NetworkConfigMessage,
               DeviceFilenamesMessage, PresetMessage, PresetAvailabilityMessage>;

/// The messages that wait to be sent, at most one of each type: a later one merges into the one that waits.
class PendingMessages {
public:
    static constexpr std::size_t slotCount = std::tuple_size_v<PendingSlots>;

    /// Returns whether the message took an empty slot; otherwise it was merged into the one that waits.
    template <class Message>
    bool Add(std::unique_ptr<Message> message) {
        QRN::Core::Lock lock(lock_);
        std::unique_ptr<TextProtocolMessageBase>& slot = slots_[SlotOf<Message>()];
        if (slot == nullptr) {
            slot = std::move(message);
            return true;
        }
        MergeInto(static_cast<Message&>(*slot), *message);
        return false;
    }

    /// Takes the first message in slot order, or nothing.
    std::unique_ptr<TextProtocolMessageBase> TakeNext();

private:
    template <class Message>
    static constexpr std::size_t SlotOf() {
        return []<std::size_t... slot>(std::index_sequence<slot...>) {
            constexpr std::size_t none = slotCount;
            std::size_t found = none;
            ((IsSlotOf<Message, std::tuple_element_t<slot, PendingSlots>> ? found = slot : none), ...);
            return found;
        }
        (std::make_index_sequence<slotCount>());
    }
    template <class Message, class Slot>
    static constexpr bool IsSlotOf = std::is_same_v<Slot, Message> || std::is_same_v<Slot, NeverSent<Message>>;

    template <class Set>
    static void MergeInto(TextProtocolMessage<Set>& waiting, const TextProtocolMessage<Set>& later) {
        Merge<Set>(waiting, later);
    }

    QRN::Core::Lockable lock_;
    std::array<std::unique_ptr<TextProtocolMessageBase>, slotCount> slots_ GUARDED_BY(lock_);
};

}  // namespace Morquil
