#include "simulator/offers/conversions.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace Morquil::Simulator {

namespace {

/// How different two modes look to a viewer: the frame size counts most, then the scan, then the rate.
std::int32_t Distance(const VideoModeDetails& one, const VideoModeDetails& other) {
    constexpr std::int32_t otherScan = 10;
    constexpr std::int32_t perPixel = 100;
    return perPixel * (std::abs(one.width - other.width) + std::abs(one.height - other.height)) +
           (one.scanCode == other.scanCode ? 0 : otherScan) + std::abs(one.frameRateIndex - other.frameRateIndex);
}

}  // namespace

bool IsConvertible(const DeviceBlocks& device, std::size_t output) {
    const ConversionTable& conversions = device.Of<SupportedConversionsChangeSet>().aspectRatio;
    for (std::size_t ratio = 0; ratio < ConversionTable::ratios; ++ratio) {
        if (conversions.Has(InputMode(device), output, ratio)) {
            return true;
        }
    }
    return false;
}

std::size_t NearestConvertible(const DeviceBlocks& device, std::size_t output) {
    const VideoModeDetails& wanted = VideoModes::rows[output].details;
    std::size_t nearest = InputMode(device);  // the input mode is always a possible output mode
    for (std::size_t mode = 0; mode < ConversionTable::modes; ++mode) {
        const bool nearer =
            Distance(wanted, VideoModes::rows[mode].details) < Distance(wanted, VideoModes::rows[nearest].details);
        if (nearer && IsConvertible(device, mode)) {
            nearest = mode;
        }
    }
    return nearest;
}

std::uint32_t NearestTimecode(std::uint32_t timecode, std::int32_t frameRate) {
    const auto frames =
        static_cast<std::uint32_t>(FrameRates::highestTimecodeFrame[static_cast<std::size_t>(frameRate)]);
    const std::array<std::uint32_t, 4> highest{23, 59, 59, frames};
    std::uint32_t nearest = 0;
    for (std::size_t part = 0; part < highest.size(); ++part) {
        const std::uint32_t digits = timecode >> (24 - 8 * part) & 0xffU;
        const std::uint32_t number = std::min(10 * (digits >> 4U) + (digits & 0xfU), highest[part]);
        nearest = nearest << 8U | number / 10 << 4U | number % 10;
    }
    return nearest;
}

}  // namespace Morquil::Simulator
