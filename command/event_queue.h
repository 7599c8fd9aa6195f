#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

#include "command/local_time.h"
#include "morquil.hpp"

namespace Morquil::Command {

enum class EventKind { Changed, Connected, Lost, Failed };

/// What the library's threads have to tell.
struct Event {
    EventKind kind = EventKind::Changed;
    morquil::PropertySet set = {};
    morquil::ConnectFailure reason = morquil::ConnectFailure::NoResponse;
    std::shared_ptr<const morquil::Device> device = {};
    WallClock::time_point time = WallClock::now();
};

/// Brings events from the library's threads to the command's own.
class EventQueue {
public:
    void Add(Event event) {
        const std::lock_guard lock(mutex_);
        events_.push_back(std::move(event));
        added_.notify_one();
    }

    /// The next event; nothing when none comes within a time after which the caller had better look up.
    std::optional<Event> Next() {
        std::unique_lock lock(mutex_);
        if (!added_.wait_for(lock, lookUp, [this] { return !events_.empty(); })) {
            return std::nullopt;
        }
        std::optional<Event> event = std::move(events_.front());
        events_.pop_front();
        return event;
    }

private:
    // A user's interruption comes by a flag, since a signal handler may do no more.
    static constexpr std::chrono::milliseconds lookUp{50};

    std::mutex mutex_;
    std::condition_variable added_;
    std::deque<Event> events_;
};

}  // namespace Morquil::Command
