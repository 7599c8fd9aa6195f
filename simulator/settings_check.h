// Walks the limits of blocks.
#pragma once

#include <string>

#include "simulator/block_kinds.h"
#include "simulator/limit_tables.h"
#include "simulator/members.h"
#include "simulator/wire_text.h"

namespace Morquil::Simulator {

/// Names block, key and value of a block that holds just one field.
template <class Description>
std::string SettingInWords(const ChangeSetOf<Description>& set) {
    const std::string block = DeviceText<Description>(set);
    const std::size_t line = block.find('\n') + 1;
    return std::string(Description::block.header.name) + ", " + block.substr(line, block.find('\n', line) - line);
}

/// What is wrong with the first value in `received` that a device with these modes and offers does not take; empty when
/// it takes all.
template <class Description>
std::string FirstComplaint(const ChangeSetOf<Description>& received, const DeviceBlocks& device) {
    std::string complaint;
    const auto check = [&](const auto& row) {
        ChangeSetOf<Description> refused;
        ForEachPair(refused.*row.setting, received.*row.setting, [&](auto& mark, const auto& field) {
            const auto& offers = device.Of<typename LimitsOf<Description>::Offers>();
            if (complaint.empty() && field.IsPresent() && !row.Allows(device, offers, field.Get())) {
                mark = field;
                complaint = SettingInWords<Description>(refused) + ": the device does not offer this value";
            }
        });
    };
    std::apply([&](const auto&... row) { (check(row), ...); }, LimitsOf<Description>::rows);
    return complaint;
}

/// Gives every setting of the block that has lost its offer the nearest value that there is.
template <class Description>
void Settle(DeviceBlocks& device) {
    const auto settle = [&](const auto& row) {
        ChangeSetOf<Description>& set = device.Of<Description>();
        const ChangeSetOf<Description> before = set;
        ForEachPair(set.*row.setting, before.*row.setting, [&](auto& field, const auto& present) {
            const auto& offers = device.Of<typename LimitsOf<Description>::Offers>();
            if (present.IsPresent() && !row.Allows(device, offers, present.Get())) {
                field.Set(row.Nearest(device, offers, present.Get()));
            }
        });
    };
    std::apply([&](const auto&... row) { (settle(row), ...); }, LimitsOf<Description>::rows);
}

/// What is wrong with the first of these settings. Blocks are judged in the order in which they are told.
inline std::string FirstComplaint(const DeviceBlocks& received, const DeviceBlocks& device) {
    std::string complaint;
    ForEachBlock<BlockKind::Settings>([&](auto entry) {
        using Description = typename decltype(entry)::Description;
        if (complaint.empty()) {
            complaint = FirstComplaint<Description>(received.Of<Description>(), device);
        }
    });
    return complaint;
}

inline void SettleAll(DeviceBlocks& device) {
    ForEachBlock<BlockKind::Settings>([&](auto entry) { Settle<typename decltype(entry)::Description>(device); });
}

}  // namespace Morquil::Simulator
