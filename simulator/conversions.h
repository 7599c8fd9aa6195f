// What depends on the pair of input mode and output mode.
#pragma once

#include <cstddef>
#include <cstdint>

#include "simulator/device_blocks.h"

namespace Morquil::Simulator {

/// Whether the device can convert its input mode to `output`, in any aspect ratio.
bool IsConvertible(const DeviceBlocks& device, std::size_t output);

/// The output mode that comes closest to `output` among those to which the input mode can be converted.
std::size_t NearestConvertible(const DeviceBlocks& device, std::size_t output);

/// Output modes are limited by the input mode.
template <class Setting>
struct ConvertibleMode {
    Setting setting;

    constexpr explicit ConvertibleMode(Setting limited) : setting(limited) {}

    template <class Offers>
    bool Allows(const DeviceBlocks& device, const Offers& /*offers*/, std::int32_t mode) const {
        return IsConvertible(device, static_cast<std::size_t>(mode));
    }
    template <class Offers>
    std::int32_t Nearest(const DeviceBlocks& device, const Offers& /*offers*/, std::int32_t mode) const {
        return static_cast<std::int32_t>(NearestConvertible(device, static_cast<std::size_t>(mode)));
    }
};

/// Aspect ratios are limited by both modes.
template <class Setting>
struct ConvertibleShape {
    Setting setting;

    constexpr explicit ConvertibleShape(Setting limited) : setting(limited) {}

    template <class Offers>
    bool Allows(const DeviceBlocks& device, const Offers& /*offers*/, std::int32_t ratio) const {
        return device.Of<SupportedConversionsChangeSet>().aspectRatio.Has(InputMode(device), OutputMode(device),
                                                                          static_cast<std::size_t>(ratio));
    }
    /// The picture is squeezed when it cannot be fitted in any other way.
    template <class Offers>
    std::int32_t Nearest(const DeviceBlocks& /*device*/, const Offers& /*offers*/, std::int32_t /*ratio*/) const {
        return morquilAPIAspectRatioAnamorphic;
    }
};

/// The timecode that comes closest to `timecode`, eight BCD digits, among those within a day at this frame rate.
std::uint32_t NearestTimecode(std::uint32_t timecode, std::int32_t frameRate);

/// Timecodes count the frames of the output mode, within a day.
template <class Setting>
struct TimeOfDay {
    Setting setting;

    constexpr explicit TimeOfDay(Setting limited) : setting(limited) {}

    template <class Offers>
    bool Allows(const DeviceBlocks& device, const Offers& offers, std::uint32_t timecode) const {
        return Nearest(device, offers, timecode) == timecode;
    }
    template <class Offers>
    std::uint32_t Nearest(const DeviceBlocks& device, const Offers& /*offers*/, std::uint32_t timecode) const {
        return NearestTimecode(timecode, VideoModes::rows[OutputMode(device)].details.frameRateIndex);
    }
};

}  // namespace Morquil::Simulator
