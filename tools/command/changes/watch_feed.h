#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "command/changes/change_log.h"
#include "morquil.hpp"

namespace Morquil::Command {

enum class EventKind { Connected, Lost, Failed };

/// A change in the state of a connection.
struct Event {
    EventKind kind = EventKind::Lost;
    morquil::ConnectFailure reason = morquil::ConnectFailure::NoResponse;
    std::shared_ptr<const morquil::Device> device = {};
    WallClock::time_point time = WallClock::now();
    std::size_t skipped = 0;  // how many events before this one were dropped
};

/// What a watch has to show: first the changes, then the event.
struct News {
    std::vector<ValueChange> changes;
    std::optional<Event> event;
};

/// Passes events from the library's threads to the command's thread, which may be slower or blocked by its output.
/// Holds one change per property, and the latest events.
class WatchFeed {
public:
    static constexpr std::size_t mostEvents = 16;

    /// Reads the property and stores its value if it is new.
    /// Threads: any.
    void Look(const Property& property, const morquil::Device& device);
    /// Once `mostEvents` are unread, the oldest are dropped.
    /// Threads: any.
    void Add(Event event);

    /// Waits for news, but only briefly, so that the caller can check its own flags.
    News Next();
    /// Returns what is available without waiting.
    News Take();

private:
    std::mutex mutex_;
    std::condition_variable added_;
    ChangeLog log_;
    std::deque<Event> events_;
    std::size_t dropped_ = 0;
};

}  // namespace Morquil::Command
