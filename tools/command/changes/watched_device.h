#pragma once

#include <memory>
#include <vector>

#include "command/changes/watch_feed.h"
#include "command/properties/property.h"
#include "morquil.hpp"

namespace Morquil::Command {

/// The properties of a device that are watched. The device may be replaced by another object of it.
class WatchedDevice {
public:
    explicit WatchedDevice(Selection selection) : selection_(std::move(selection)) {}

    /// Subscribes to a device and reads its values. A value that differs from the previous object's is a change.
    void Begin(const morquil::Device& device);
    void End() { subscriptions_.clear(); }

    std::size_t Count() const { return selection_.size(); }
    WatchFeed& Feed() const { return *feed_; }
    /// The feed that handlers share; they may still run after the watch is destroyed.
    std::shared_ptr<WatchFeed> SharedFeed() const { return feed_; }

private:
    const Selection selection_;
    const std::shared_ptr<WatchFeed> feed_ = std::make_shared<WatchFeed>();
    std::vector<morquil::Subscription> subscriptions_;
};

}  // namespace Morquil::Command
