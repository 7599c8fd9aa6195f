// What a device sends, as pieces that arrive one after another on the simulated clock.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/worlds/simulation/dice.h"
#include "tests/worlds/simulation/scheduler.h"

namespace Morquil::Testing::Worlds {

/// A block's lines, as key and value, in wire order.
using Lines = std::vector<std::pair<std::string, std::string>>;

/// A unit of what a device sends, and what it means.
struct DeviceMessage {
    enum class Kind { Nothing, Acknowledge, Block };

    Kind kind = Kind::Nothing;
    std::string header;  ///< of a block
    Lines lines;         ///< of a block; those with a meaning
    std::string bytes;
    std::size_t count = 1;  ///< of acknowledgements
};

/// How a connection ends: `Close` after everything that was sent, `Reset` instead of everything not received by then.
enum class Ending { Close, Reset };

/// Is notified of the receiver's actions, on the thread that performs them.
class WireListener {
public:
    virtual ~WireListener() = default;

    /// The receiver has just received the last byte of this, and nothing after it.
    virtual void Received(const DeviceMessage& /*message*/) {}
    /// The receiver is about to wait or to receive: it has processed everything that it has received.
    virtual void ReadyForMore() {}
    virtual void Opened() {}
    virtual void OpenFailed() {}
    /// A whole block, or something else that ends with an empty line.
    virtual void Sent(const std::string& /*block*/) {}
    /// The receiver's wait has timed out, `silence` after the first wait that followed its last byte.
    virtual void TimedOut(Time /*silence*/) {}
    virtual void Closed() {}
    virtual void Destroyed() {}
};

/// The path from a device to a host.
class Wire {
public:
    /// Queues `message`, cut anywhere, after everything in transit; not before `delay` from now.
    void Say(Dice& dice, const DeviceMessage& message, Time delay);
    /// Queues it as one piece; not before `delay` from now.
    void SayWhole(const DeviceMessage& message, Time delay);
    /// Queues one piece, which arrives at once.
    void Say(std::string bytes);
    /// The connection ends `delay` after everything in transit has arrived.
    void End(Ending ending, Time delay);
    /// Drops everything but the first `count` bytes in transit, and ends the connection after them.
    void EndAfter(std::size_t count, Ending ending);
    bool HasEnd() const { return ending_.has_value(); }

    /// When the next piece arrives, or `never`.
    Time NextArrival() const { return pieces_.empty() ? never : pieces_.front().at; }
    bool HasArrived() const { return NextArrival() <= Scheduler::Instance().Now(); }
    /// Whether the next thing to be received is the end of the connection.
    bool IsEnd() const { return pieces_.front().isEnd || IsReset(); }
    /// Whether it has been reset.
    bool IsReset() const;
    /// Takes up to `capacity` bytes of the piece that has arrived. `whole` is the message that they complete, if any.
    std::string Take(std::size_t capacity, std::optional<DeviceMessage>& whole);

private:
    struct Piece {
        Time at = 0;
        std::string bytes;
        std::optional<DeviceMessage> whole = std::nullopt;  ///< the message that the last byte completes
        bool isEnd = false;
    };

    Time ArrivalAfter(Time delay) const;

    std::deque<Piece> pieces_;
    std::optional<Ending> ending_;
};

}  // namespace Morquil::Testing::Worlds
