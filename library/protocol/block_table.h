#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "protocol/table/block_facts.h"

namespace Morquil {

/// One block of the protocol: its own table, and the facts about the block as a whole.
template <class BlockDescription, BlockFacts blockFacts>
struct BlockEntry {
    using Description = BlockDescription;
    static constexpr BlockFacts facts = blockFacts;
};

// clang-format off
/// All blocks. A block's number is its place here, counted from 1; the operations of a sink have the same order. The
/// blocks' own tables are only declared here, so that a feature includes only those that it keeps.
using BlockTable = std::tuple<
    BlockEntry<struct ProtocolPreambleChangeSet,                AnnouncedBlock()>,
    BlockEntry<struct MorquilDeviceChangeSet,                   SettingsBlock().Slot(1).Saved(14)>,
    BlockEntry<struct VideoInputChangeSet,                      SettingsBlock().Slot(3).Saved(1).NotPlayedBack()>,
    BlockEntry<struct VideoInputAvailabilityChangeSet,          OffersBlock().Slot(4)>,
    BlockEntry<struct VideoOutputChangeSet,                     SettingsBlock().Slot(5).Saved(2)>,
    BlockEntry<struct VideoOutputAvailabilityChangeSet,         OffersBlock().Slot(6)>,
    BlockEntry<struct SupportedConversionsChangeSet,            OffersBlock().Slot(2)>,
    BlockEntry<struct VideoProcAmpChangeSet,                    SettingsBlock().Slot(7).Saved(3)>,
    BlockEntry<struct VideoProcAmpAvailabilityChangeSet,        OffersBlock().Slot(8)>,
    BlockEntry<struct VideoAdjustChangeSet,                     SettingsBlock().Slot(9).Saved(4)>,
    BlockEntry<struct VideoAdjustAvailabilityChangeSet,         OffersBlock().Slot(10)>,
    BlockEntry<struct NoiseReductionChangeSet,                  SettingsBlock().Slot(11).Saved(5)>,
    BlockEntry<struct NoiseReductionAvailabilityChangeSet,      OffersBlock().Slot(12)>,
    BlockEntry<struct TestPatternChangeSet,                     SettingsBlock().Slot(13).Saved(6)>,
    BlockEntry<struct TestPatternAvailabilityChangeSet,         OffersBlock().Slot(14)>,
    BlockEntry<struct VideoAdvancedChangeSet,                   SettingsBlock().Slot(15).Saved(9)>,
    BlockEntry<struct VideoAdvancedAvailabilityChangeSet,       OffersBlock().Slot(16)>,
    BlockEntry<struct AncillaryDataChangeSet,                   SettingsBlock().Slot(17).Saved(8)>,
    BlockEntry<struct AncillaryDataAvailabilityChangeSet,       OffersBlock().Slot(18)>,
    BlockEntry<struct GenlockChangeSet,                         SettingsBlock().Slot(19).Saved(7)>,
    BlockEntry<struct GenlockAvailabilityChangeSet,             OffersBlock().Slot(20)>,
    BlockEntry<struct VariableAspectRatioChangeSet,             SettingsBlock().Slot(21).Saved(11)>,
    BlockEntry<struct VariableAspectRatioAvailabilityChangeSet, OffersBlock().Slot(22)>,
    // The device accepts alignment only from its own panel.
    BlockEntry<struct AlignChangeSet,                           SettingsBlock().Slot(27).NeverSent().Saved(12)>,
    BlockEntry<struct AlignAvailabilityBlock,                   OffersBlock().Slot(28).NeverSent()>,
    BlockEntry<struct AudioChangeSet,                           SettingsBlock().Slot(23).Saved(13)>,
    BlockEntry<struct AudioAvailabilityChangeSet,               OffersBlock().Slot(24)>,
    BlockEntry<struct Mode3DChangeSet,                          SettingsBlock().Slot(25).Saved(10)>,
    BlockEntry<struct Mode3DAvailabilityChangeSet,              OffersBlock().Slot(26)>,
    BlockEntry<struct NetworkConfigChangeSet,                   SettingsBlock().Slot(29)>,
    BlockEntry<struct DeviceFilenamesChangeSet,                 SettingsBlock().Slot(30)>,
    BlockEntry<struct PresetChangeSet,                          SettingsBlock().Slot(31)>,
    BlockEntry<struct PresetAvailabilityChangeSet,              OffersBlock().Slot(32)>>;
// clang-format on

inline constexpr std::size_t blockCount = std::tuple_size_v<BlockTable>;

/// The place of a block in the table, counted from 0.
template <class Description>
inline constexpr std::size_t placeOf = []<class... Entries>(std::type_identity<std::tuple<Entries...>>) {
    std::size_t place = 0;
    static_cast<void>(((std::is_same_v<typename Entries::Description, Description> || (++place, false)) || ...));
    return place;
}(std::type_identity<BlockTable>());

template <class Description>
inline constexpr BlockFacts factsOf = std::tuple_element_t<placeOf<Description>, BlockTable>::facts;

/// Calls `visit.operator()<Description>()` for every block in the order of the table.
template <class Visit>
constexpr void ForEachBlock(Visit visit) {
    [&]<class... Entries>(std::type_identity<std::tuple<Entries...>>) {
        (visit.template operator()<typename Entries::Description>(), ...);
    }(std::type_identity<BlockTable>());
}

/// The same for the blocks of one role.
template <BlockRole role, class Visit>
constexpr void ForEachBlock(Visit visit) {
    ForEachBlock([&]<class Description>() {
        if constexpr (factsOf<Description>.role == role) {
            visit.template operator()<Description>();
        }
    });
}

/// The facts about every block, by its place in the table.
inline constexpr std::array<BlockFacts, blockCount> factsByPlace =
    []<class... Entries>(std::type_identity<std::tuple<Entries...>>) {
        return std::array<BlockFacts, blockCount>{Entries::facts...};
    }(std::type_identity<BlockTable>());

inline constexpr std::size_t savedBlockCount = static_cast<std::size_t>(std::count_if(
    factsByPlace.begin(), factsByPlace.end(), [](const BlockFacts& facts) { return facts.savedPlace != 0; }));

/// The places of the blocks that a settings file holds, in the order of the file.
inline constexpr std::array<std::size_t, savedBlockCount> savedBlocks = [] {
    std::array<std::size_t, savedBlockCount> places{};
    for (std::size_t place = 0; place < blockCount; ++place) {
        if (factsByPlace[place].savedPlace != 0) {
            places[factsByPlace[place].savedPlace - 1] = place;
        }
    }
    return places;
}();

}  // namespace Morquil
