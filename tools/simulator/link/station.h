#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include "simulator/link/outbox.h"

namespace Morquil::Simulator {

/// Whoever is at the device's end of the connections. Knows no socket and no clock: it is told what happens and when,
/// and asked what is to be sent. Moments count from the start of the program and never go back.
/// Threads: one at a time.
class Station {
public:
    /// Whoever owns the connections numbers the hosts: 1 is the first that came, and no number is used again.
    using HostId = unsigned;
    using Moment = std::chrono::milliseconds;

    Station() = default;
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;
    virtual ~Station() = default;

    virtual void Connect(HostId host, Moment now) = 0;
    /// A connected host has gone, or has been hung up on.
    virtual void Disconnect(HostId host, Moment now) = 0;
    /// Bytes of a connected host, split in any way.
    virtual void Receive(HostId host, std::string_view bytes, Moment now) = 0;

    /// What a connected host gets next; nothing when nothing is due.
    virtual Delivery Take(HostId host, Moment now) = 0;
    /// When `Take` has something for this host.
    virtual std::optional<Moment> NextDelivery(HostId host) const = 0;

    /// Whether the connection is to end at once, whatever is still on its way: the host leaves too much unread, or
    /// says too much that nobody wants to hear.
    virtual bool GivesUp(HostId host) const = 0;

    /// Lets happen what is due without anybody's doing.
    virtual void Advance(Moment now) = 0;
    /// When `Advance` has something to do.
    virtual std::optional<Moment> NextDue() const = 0;
};

}  // namespace Morquil::Simulator
