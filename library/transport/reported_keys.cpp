#include "transport/reported_keys.h"

#include <algorithm>
#include <array>

#include "protocol/block_table.h"
#include "protocol/blocks/all.h"

namespace Morquil {
namespace {

/// A key that no device reports, and the slot of its block.
struct UnreportedKey {
    std::size_t slot;
    std::string_view key;
};

/// Calls `visit` with each of them.
template <class Visit>
constexpr void ForEachUnreportedKey(Visit visit) {
    ForEachBlock<BlockRole::Settings>([&]<class Description>() {
        Description::block.rows.ForEach([&](const auto& row) {
            const bool isWriteOnly = row.Names().empty();
            row.ForEachKey([&](const auto& key) {
                if constexpr (requires { key.name; }) {
                    if (isWriteOnly || key.facts.use == KeyUse::Command) {
                        visit(UnreportedKey{factsOf<Description>.slot - 1, key.name});
                    }
                }
            });
        });
    });
}

constexpr std::size_t unreportedKeyCount = [] {
    std::size_t count = 0;
    ForEachUnreportedKey([&](const UnreportedKey&) { ++count; });
    return count;
}();

constexpr std::array<UnreportedKey, unreportedKeyCount> unreportedKeys = [] {
    std::array<UnreportedKey, unreportedKeyCount> all{};
    std::size_t at = 0;
    ForEachUnreportedKey([&](const UnreportedKey& key) { all[at++] = key; });
    return all;
}();

}  // namespace

bool IsReportedBack(std::size_t slot, std::string_view key) {
    return std::none_of(unreportedKeys.begin(), unreportedKeys.end(), [&](const UnreportedKey& unreported) {
        return unreported.slot == slot && unreported.key == key;
    });
}

}  // namespace Morquil
