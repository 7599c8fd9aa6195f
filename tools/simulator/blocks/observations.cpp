#include "simulator/blocks/observations.h"

#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

namespace {

void ObserveSizes(GeometryFields& geometry, const VideoModeDetails& input, const VideoModeDetails& output) {
    geometry.lastInputWidth.Set(static_cast<std::uint32_t>(input.width));
    geometry.lastInputHeight.Set(static_cast<std::uint32_t>(input.height));
    geometry.lastOutputWidth.Set(static_cast<std::uint32_t>(output.width));
    geometry.lastOutputHeight.Set(static_cast<std::uint32_t>(output.height));
}

}  // namespace

void ObservePictureSizes(DeviceBlocks& device) {
    const VideoModeDetails& input = VideoModes::rows[InputMode(device)].details;
    const VideoModeDetails& output = VideoModes::rows[OutputMode(device)].details;
    ObserveSizes(device.Of<VariableAspectRatioChangeSet>(), input, output);
    ObserveSizes(device.Of<AlignChangeSet>(), input, output);
    device.Of<AncillaryDataChangeSet>().lastInputHeight.Set(static_cast<std::uint32_t>(input.height));
}

}  // namespace Morquil::Simulator
