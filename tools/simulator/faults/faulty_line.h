#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/faults/faults.h"
#include "simulator/faults/noise.h"
#include "simulator/faults/spoiled_blocks.h"
#include "simulator/link/outbox.h"

namespace Morquil::Simulator {

/// The line between a device and one host, with all its possible faults. Has no socket and no clock: the caller passes
/// in what arrives and the current time, and requests what is to be sent.
///
///     FaultyLine line(faults);
///     line.FromDevice(greeting, now);
///     for (Delivery next = line.Take(now); !next.IsNothing(); next = line.Take(now)) { ... }
class FaultyLine {
public:
    using Moment = std::chrono::milliseconds;

    /// The most that a host may leave unread: a device's memory is limited.
    static constexpr std::size_t unreadLimit = std::size_t{4} * 1024 * 1024;

    /// `faults` is not owned and may change at any time.
    explicit FaultyLine(const Faults& faults) : faults_(faults), noise_(faults.seed) {}

    /// Returns what the device receives of the host's bytes.
    std::string FromHost(std::string_view bytes);
    /// Adds text from the device, in whole blocks. The preamble comes first.
    void FromDevice(std::string_view text, Moment now);

    /// Sends garbage once.
    void SendGarbage(Moment now);
    /// Hangs up on the host. Text that has not arrived yet is lost.
    void HangUp(Moment now);
    /// Hangs up in the middle of the next block.
    void HangUpMidBlock() { cutNextBlock_ = true; }

    /// Returns the next text for the host, in the pieces in which it is to be sent. Empty if nothing is due.
    Delivery Take(Moment now);
    /// When `Take` next has something to return; nothing if nothing is pending.
    std::optional<Moment> NextDue() const;

    /// Whether the host has left so much unread that it must be disconnected.
    bool IsUnread() const { return outbox_.ByteCount() > unreadLimit; }

private:
    std::string Distort(std::string_view block);
    void Send(std::string text, Moment due);
    bool IsFlooding() const { return faults_.flood && !latestReport_.empty() && !outbox_.IsClosed(); }
    void Flood(Moment now);
    std::size_t PieceSize();

    const Faults& faults_;
    Noise noise_;
    SpoiledBlocks fromHost_;
    Outbox outbox_;
    bool preambleSent_ = false;
    bool cutNextBlock_ = false;
    std::size_t sent_ = 0;
    std::string latestReport_;
    Moment nextFlood_{0};
};

}  // namespace Morquil::Simulator
