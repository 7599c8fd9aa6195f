#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace Morquil {

/// The frame heights, in lines, for which line ranges are kept; a height's place here is its slot.
inline constexpr std::array<std::uint32_t, 5> frameHeights{486, 576, 720, 1080, 2160};

/// The slot of a frame height, or the number of slots for a height that has none.
constexpr std::size_t FrameHeightSlot(std::uint32_t height) {
    return static_cast<std::size_t>(std::find(frameHeights.begin(), frameHeights.end(), height) - frameHeights.begin());
}

}  // namespace Morquil
