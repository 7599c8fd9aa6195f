#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "protocol/blocks/video_output.h"

namespace Morquil::Simulator {

/// The memory for one still frame. What is ordered takes its time.
class StillStore {
public:
    using Time = std::chrono::milliseconds;

    explicit StillStore(Time duration) : duration_(duration) {}

    /// Begins a still frame action. Returns the flags as they are from now on.
    VideoOutputChangeSet Begin(std::int32_t action);

    /// Lets time pass. Returns the flags of what has come to its end.
    VideoOutputChangeSet Advance(Time now);

    /// When the next action comes to its end; nothing while none is under way.
    std::optional<Time> NextDue() const;

private:
    Time duration_;
    Time now_{0};
    // By action: one that is ordered again while it is under way begins anew.
    std::array<std::optional<Time>, StillFrameActions::words.Size()> due_;
};

}  // namespace Morquil::Simulator
