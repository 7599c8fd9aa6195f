// What a device does with each block, told from the block's name.
#pragma once

#include <string_view>

#include "protocol/block_table.h"

namespace Morquil::Simulator {

enum class BlockKind {
    Announcement,  // the preamble: the device says it once, hosts never do
    Settings,      // pushed on connection; a host changes fields by sending them
    Offer,         // what settings can be set to; told when a host asks
};

template <class Description>
constexpr BlockKind KindOf() {
    constexpr std::string_view name = Description::block.header.name;
    if (name == ProtocolPreambleChangeSet::block.header.name) {
        return BlockKind::Announcement;
    }
    const bool isOffer = name.ends_with(" AVAILABILITY") || name == SupportedConversionsChangeSet::block.header.name;
    return isOffer ? BlockKind::Offer : BlockKind::Settings;
}

/// Calls `visit` with every entry of the block table that is of this kind, in the table's order.
template <BlockKind kind, class Visit>
void ForEachBlock(Visit visit) {
    const auto visitIfOfKind = [&]<class Entry>(Entry entry) {
        if constexpr (KindOf<typename Entry::Description>() == kind) {
            visit(entry);
        }
    };
    std::apply([&](auto... entry) { (visitIfOfKind(entry), ...); }, BlockTable());
}

}  // namespace Morquil::Simulator
