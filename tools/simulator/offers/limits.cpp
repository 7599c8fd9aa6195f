#include "simulator/offers/limits.h"

#include "protocol/table/frame_heights.h"

namespace Morquil::Simulator {

namespace {

std::size_t HeightSlot(std::size_t mode) {
    return FrameHeightSlot(static_cast<std::uint32_t>(VideoModes::rows[mode].details.height));
}

}  // namespace

std::size_t SlotNow(OfferSlot slot, const DeviceBlocks& device) {
    switch (slot) {
        case OfferSlot::InputHeight:
            return HeightSlot(InputMode(device));
        case OfferSlot::OutputHeight:
            return HeightSlot(OutputMode(device));
        case OfferSlot::OutputMode:
            break;
    }
    return OutputMode(device);
}

}  // namespace Morquil::Simulator
