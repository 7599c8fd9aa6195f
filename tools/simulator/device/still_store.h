#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "protocol/blocks/video_output.h"

namespace Morquil::Simulator {

/// The memory for one still frame. Its actions take time.
class StillStore {
public:
    using Time = std::chrono::milliseconds;

    explicit StillStore(Time duration) : duration_(duration) {}

    /// Starts a still frame action. Returns the new flags.
    VideoOutputChangeSet Begin(std::int32_t action);

    /// Moves the clock on to `now`. Returns the flags of the completed actions.
    VideoOutputChangeSet Advance(Time now);

    /// When the next action completes; nothing if none is in progress.
    std::optional<Time> NextDue() const;

private:
    Time duration_;
    Time now_{0};
    // By action. An action that is requested again while in progress restarts.
    std::array<std::optional<Time>, StillFrameActions::words.Size()> due_;
};

}  // namespace Morquil::Simulator
