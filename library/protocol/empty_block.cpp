// Apart from the rest of any_block.h, because only simulated devices ask this: the library does not link it.
#include <array>

#include "protocol/any_block.h"
#include "protocol/block_table.h"
#include "protocol/blocks/all.h"
#include "protocol/table/block.h"

namespace Morquil {

namespace {

using Check = bool (*)(const void* changeSet);

constexpr std::array<Check, blockCount> checks = [] {
    std::array<Check, blockCount> all{};
    ForEachBlock([&]<class Description>() {
        all[placeOf<Description>] = [](const void* changeSet) {
            return IsEmpty(*static_cast<const ChangeSetOf<Description>*>(changeSet));
        };
    });
    return all;
}();

}  // namespace

bool IsEmpty(AnyBlock block) {
    return checks[block.place](block.changeSet);
}

}  // namespace Morquil
