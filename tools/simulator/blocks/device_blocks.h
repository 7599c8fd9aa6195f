#pragma once

#include <cstddef>
#include <tuple>

#include "protocol/any_block.h"
#include "protocol/block_table.h"
#include "protocol/blocks/all.h"

namespace Morquil::Simulator {

/// The values of all blocks of a device, settings and offers alike. A copy is a snapshot.
class DeviceBlocks {
public:
    /// The values of one block.
    template <class Description>
    ChangeSetOf<Description>& Of() {
        return blocks_.template Get<placeOf<Description>>();
    }
    template <class Description>
    const ChangeSetOf<Description>& Of() const {
        return blocks_.template Get<placeOf<Description>>();
    }

    AnyBlock At(std::size_t place) const;
    /// Merges the values of one block into those it holds.
    void Merge(AnyBlock block);

private:
    template <class Table>
    struct AllStored;
    template <class... Entries>
    struct AllStored<std::tuple<Entries...>> {
        using Type = PlainTuple<ChangeSetOf<typename Entries::Description>...>;
    };

    AllStored<BlockTable>::Type blocks_;
};

/// The device's input and output video modes, as rows of `VideoModes`.
inline std::size_t InputMode(const DeviceBlocks& device) {
    return static_cast<std::size_t>(device.Of<VideoInputChangeSet>().videoMode.Get());
}
inline std::size_t OutputMode(const DeviceBlocks& device) {
    return static_cast<std::size_t>(device.Of<VideoOutputChangeSet>().videoMode.Get());
}

}  // namespace Morquil::Simulator
