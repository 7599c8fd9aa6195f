#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include "simulator/link/outbox.h"

namespace Morquil::Simulator {

/// The device's end of the connections. Has no socket and no clock: the caller passes in what happens and when, and
/// requests what is to be sent. Moments count from the start of the program and never go back.
/// Threads: one at a time.
class Station {
public:
    /// Assigned by the owner of the connections. 1 is the first host, and numbers are never reused.
    using HostId = unsigned;
    using Moment = std::chrono::milliseconds;

    Station() = default;
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;
    virtual ~Station() = default;

    virtual void Connect(HostId host, Moment now) = 0;
    /// A connected host has disconnected, or was disconnected by the station.
    virtual void Disconnect(HostId host, Moment now) = 0;
    /// Bytes from a connected host, split in any way.
    virtual void Receive(HostId host, std::string_view bytes, Moment now) = 0;

    /// What is sent next to a connected host; empty if nothing is due.
    virtual Delivery Take(HostId host, Moment now) = 0;
    /// When `Take` next has something for this host.
    virtual std::optional<Moment> NextDelivery(HostId host) const = 0;

    /// Whether the connection must end at once and drop pending text: the host leaves too much unread, or sends too
    /// much that is not expected.
    virtual bool MustDisconnect(HostId host) const = 0;

    /// Completes what is due at `now`.
    virtual void Advance(Moment now) = 0;
    /// When `Advance` next has something to do.
    virtual std::optional<Moment> NextDue() const = 0;
};

}  // namespace Morquil::Simulator
