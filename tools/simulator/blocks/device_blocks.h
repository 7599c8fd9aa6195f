#pragma once

#include <tuple>

#include "protocol/block_table.h"
#include "protocol/blocks/all.h"

namespace Morquil::Simulator {

/// The values of all blocks of a device, settings and offers alike. A copy is a snapshot.
class DeviceBlocks {
public:
    /// The values of one block.
    template <class Description>
    ChangeSetOf<Description>& Of() {
        return std::get<Stored<Description>>(blocks_).set;
    }
    template <class Description>
    const ChangeSetOf<Description>& Of() const {
        return std::get<Stored<Description>>(blocks_).set;
    }

private:
    // Two blocks share a change set; only the description tells them apart.
    template <class Description>
    struct Stored {
        ChangeSetOf<Description> set;
    };
    template <class Table>
    struct AllStored;
    template <class... Entries>
    struct AllStored<std::tuple<Entries...>> {
        using Type = std::tuple<Stored<typename Entries::Description>...>;
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
