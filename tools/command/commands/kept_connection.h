#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "command/changes/watch_feed.h"
#include "morquil.hpp"

namespace Morquil::Command {

/// Which attempts to connect that have failed are events.
enum class FailedAttempts { UntilConnected, All };

/// Keeps a device connected, and reports to a feed.
class KeptConnection {
public:
    KeptConnection(const std::string& address, const std::shared_ptr<WatchFeed>& feed, FailedAttempts failed);
    /// A connection attempt in progress is left running until the process ends.
    ~KeptConnection();
    KeptConnection(const KeptConnection&) = delete;
    KeptConnection& operator=(const KeptConnection&) = delete;

    std::optional<morquil::Device> Current() const { return session_->Current(); }

    /// Ends a connection whose device has been silent for `limit`, so that it is made anew. Its loss is an event.
    /// Returns: whether it was ended.
    bool DropIfSilent(std::chrono::milliseconds limit) const;

private:
    std::shared_ptr<morquil::Session> session_;
};

}  // namespace Morquil::Command
