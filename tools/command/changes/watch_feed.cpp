#include "command/changes/watch_feed.h"

#include <utility>

namespace Morquil::Command {
namespace {

// A signal handler can only set a flag, so a user's interruption must be polled.
constexpr std::chrono::milliseconds longestWait{50};

}  // namespace

void WatchFeed::Look(const Property& property, const morquil::Device& device) {
    // Read under the lock: of two threads that read, the later one has the later value.
    const std::lock_guard lock(mutex_);
    log_.Note(property, Read(property, device), WallClock::now());
    if (!log_.IsEmpty()) {
        added_.notify_one();
    }
}

void WatchFeed::Add(Event event) {
    Event dropped;  // destroyed after the lock is released
    const std::lock_guard lock(mutex_);
    if (events_.size() == mostEvents) {
        ++dropped_;
        dropped = std::move(events_.front());
        events_.pop_front();
    }
    events_.push_back(std::move(event));
    added_.notify_one();
}

News WatchFeed::Next() {
    {
        std::unique_lock lock(mutex_);
        added_.wait_for(lock, longestWait, [this] { return !log_.IsEmpty() || !events_.empty(); });
    }
    return Take();
}

News WatchFeed::Take() {
    const std::lock_guard lock(mutex_);
    News news{log_.Take(), std::nullopt};
    if (!events_.empty()) {
        news.event = std::move(events_.front());
        news.event->skipped = std::exchange(dropped_, 0);
        events_.pop_front();
    }
    return news;
}

}  // namespace Morquil::Command
