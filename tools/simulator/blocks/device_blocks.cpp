#include "simulator/blocks/device_blocks.h"

#include <array>

namespace Morquil::Simulator {

namespace {

struct Operations {
    const void* (*find)(const DeviceBlocks& blocks);
    void (*merge)(DeviceBlocks& blocks, const void* changeSet);
};

constexpr std::array<Operations, blockCount> operations = [] {
    std::array<Operations, blockCount> all{};
    ForEachBlock([&]<class Description>() {
        all[placeOf<Description>] = {
            .find = [](const DeviceBlocks& blocks) -> const void* { return &blocks.Of<Description>(); },
            .merge =
                [](DeviceBlocks& blocks, const void* changeSet) {
                    Merge(blocks.Of<Description>(), *static_cast<const ChangeSetOf<Description>*>(changeSet));
                }};
    });
    return all;
}();

}  // namespace

AnyBlock DeviceBlocks::At(std::size_t place) const {
    return {place, operations[place].find(*this)};
}

void DeviceBlocks::Merge(AnyBlock block) {
    operations[block.place].merge(*this, block.changeSet);
}

}  // namespace Morquil::Simulator
