#include "transport/reported_keys.h"

#include "protocol/block_table.h"
#include "protocol/blocks/all.h"

namespace Morquil {
namespace {

/// Calls `visit` with the name of each key of a block that is never reported back.
template <class Description, class Visit>
constexpr void ForEachUnreportedKey(Visit visit) {
    const auto visitRow = [&](const auto& row) {
        const bool isWriteOnly = row.Names().empty();
        row.ForEachKey([&](const auto& key) {
            if constexpr (requires { key.name; }) {
                if (isWriteOnly || key.facts.use == KeyUse::Command) {
                    visit(key.name);
                }
            }
        });
    };
    Description::block.rows.ForEach(visitRow);
}

}  // namespace

bool IsReportedBack(std::size_t slot, std::string_view key) {
    bool isReported = true;
    ForEachBlock<BlockRole::Settings>([&]<class Description>() {
        if (factsOf<Description>.slot == slot + 1) {
            ForEachUnreportedKey<Description>([&](const char* name) { isReported &= key != name; });
        }
    });
    return isReported;
}

}  // namespace Morquil
