#include "simulator/device/presets.h"

#include <type_traits>

#include "simulator/blocks/observations.h"

namespace Morquil::Simulator {

namespace {

template <class Description>
constexpr bool belongsToPresets =
    !std::is_same_v<Description, MorquilDeviceChangeSet> && !std::is_same_v<Description, NetworkConfigChangeSet> &&
    !std::is_same_v<Description, PresetChangeSet>;

}  // namespace

void Presets::Recall(std::int32_t number, const DeviceBlocks& factory, DeviceBlocks& device) const {
    const auto found = saved_.find(number);
    const DeviceBlocks& source = found == saved_.end() ? factory : found->second;
    ForEachBlock<BlockRole::Settings>([&]<class Description>() {
        if constexpr (belongsToPresets<Description>) {
            ChangeSetOf<Description> settings = source.Of<Description>();
            RemoveObservations(settings);
            Merge(device.Of<Description>(), settings);
        }
    });
}

}  // namespace Morquil::Simulator
