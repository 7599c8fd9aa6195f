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

/// The line between a device and one host, with all that may go wrong on it. Knows no socket and no clock: whoever has
/// them tells it what arrives and what time it is, and asks what is to be sent.
///
///     FaultyLine line(faults);
///     line.FromDevice(greeting, now);
///     for (Delivery next = line.Take(now); !next.IsNothing(); next = line.Take(now)) { ... }
class FaultyLine {
public:
    using Moment = std::chrono::milliseconds;

    /// What a host may leave unread at most: a device's memory has an end.
    static constexpr std::size_t unreadLimit = std::size_t{4} * 1024 * 1024;

    /// `faults` is not owned and may change at any time.
    explicit FaultyLine(const Faults& faults) : faults_(faults), noise_(faults.seed) {}

    /// What the device gets to read of the host's bytes.
    std::string FromHost(std::string_view bytes);
    /// The device says whole blocks, the preamble first.
    void FromDevice(std::string_view text, Moment now);

    /// Nonsense, once.
    void SayGarbage(Moment now);
    /// Hangs up on the host. What is still on its way is lost.
    void HangUp(Moment now);
    /// Hangs up in the middle of the next block.
    void HangUpMidBlock() { cutNextBlock_ = true; }

    /// What the host gets next, in the pieces in which it is to be sent. Nothing when nothing is due.
    Delivery Take(Moment now);
    /// When `Take` has something to give; nothing while nothing is on its way.
    std::optional<Moment> NextDue() const;

    /// Whether the host has left so much unread that it is to be let go.
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
    bool preambleSaid_ = false;
    bool cutNextBlock_ = false;
    std::size_t sent_ = 0;
    std::string latestReport_;
    Moment nextFlood_{0};
};

}  // namespace Morquil::Simulator
