// Walks the limits of blocks.
#pragma once

#include <string>
#include <type_traits>

#include "simulator/blocks/device_text.h"
#include "simulator/blocks/members.h"
#include "simulator/offers/limits.h"

namespace Morquil::Simulator {

/// The block whose offers limit the settings of another block; for a block without limits, itself.
template <class Description>
struct OffersOf {
    using Type = Description;
};
template <class Description>
requires requires {
    typename Description::Offers;
}
struct OffersOf<Description> {
    using Type = typename Description::Offers;
};

/// Calls `visit` with every key of the block that has limits.
template <class Description, class Visit>
void ForEachLimitedKey(Visit visit) {
    ForEachKey<Description>([&](const auto& key) {
        if constexpr (!std::is_same_v<decltype(key.limit), NoLimit>) {
            visit(key);
        }
    });
}

/// The block, key and value of a change set that holds exactly one field, for messages.
template <class Description>
std::string SettingInWords(const ChangeSetOf<Description>& set) {
    const std::string block = DeviceText<Description>(set);
    const std::size_t line = block.find('\n') + 1;
    return std::string(Description::block.header.name) + ", " + block.substr(line, block.find('\n', line) - line);
}

/// What is wrong with the first value in `received` that a device with these modes and offers does not accept; empty if
/// it accepts all of them.
template <class Description>
std::string FirstError(const ChangeSetOf<Description>& received, const DeviceBlocks& device) {
    std::string error;
    ForEachLimitedKey<Description>([&](const auto& key) {
        ChangeSetOf<Description> refused;
        ForEachPair(refused.*key.member, received.*key.member, [&](auto& mark, const auto& field) {
            const auto& offers = device.Of<typename OffersOf<Description>::Type>();
            if (error.empty() && field.IsPresent() && !Allows(key.limit, device, offers, field.Get())) {
                mark = field;
                error = SettingInWords<Description>(refused) + ": the device does not offer this value";
            }
        });
    });
    return error;
}

/// Changes every setting of the block whose value is no longer offered to the nearest offered value.
template <class Description>
void Settle(DeviceBlocks& device) {
    ForEachLimitedKey<Description>([&](const auto& key) {
        ChangeSetOf<Description>& set = device.Of<Description>();
        const ChangeSetOf<Description> before = set;
        ForEachPair(set.*key.member, before.*key.member, [&](auto& field, const auto& present) {
            const auto& offers = device.Of<typename OffersOf<Description>::Type>();
            if (present.IsPresent() && !Allows(key.limit, device, offers, present.Get())) {
                field.Set(Nearest(key.limit, device, offers, present.Get()));
            }
        });
    });
}

/// What is wrong with the first of these settings. Blocks are checked in the order in which they are sent.
inline std::string FirstError(const DeviceBlocks& received, const DeviceBlocks& device) {
    std::string error;
    ForEachBlock<BlockRole::Settings>([&]<class Description>() {
        if (error.empty()) {
            error = FirstError<Description>(received.Of<Description>(), device);
        }
    });
    return error;
}

inline void SettleAll(DeviceBlocks& device) {
    ForEachBlock<BlockRole::Settings>([&]<class Description>() { Settle<Description>(device); });
}

}  // namespace Morquil::Simulator
