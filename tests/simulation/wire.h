// What a device says, as pieces that arrive one after the other on the simulated clock.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/simulation/dice.h"
#include "tests/simulation/scheduler.h"

namespace Morquil::Simulation {

/// A block's lines, as key and value, in the order of the wire.
using Lines = std::vector<std::pair<std::string, std::string>>;

/// Something that a device says as a whole, and what it means.
struct Saying {
    enum class Kind { Nothing, Acknowledge, Block };

    Kind kind = Kind::Nothing;
    std::string header;  ///< of a block
    Lines lines;         ///< of a block; those that mean something
    std::string bytes;
    std::size_t count = 1;  ///< of acknowledgements
};

/// How a connection ends: `Close` behind all that was said, `Reset` in place of all that has not been received by then.
enum class Ending { Close, Reset };

/// Hears of what the receiver does, on the thread that does it.
class WireListener {
public:
    virtual ~WireListener() = default;

    /// The receiver has just got the last byte of this, and nothing behind it.
    virtual void Received(const Saying& /*saying*/) {}
    /// The receiver is about to wait or to receive: it is done with everything that it has got.
    virtual void ReadyForMore() {}
    virtual void Opened() {}
    virtual void OpenFailed() {}
    /// A whole block, or something else that ends with an empty line.
    virtual void Sent(const std::string& /*block*/) {}
    /// The receiver was told that its wait has run out, `silence` after the first wait that followed its last byte.
    virtual void TimedOut(Time /*silence*/) {}
    virtual void Closed() {}
    virtual void Destroyed() {}
};

/// The way from a device to a host.
class Wire {
public:
    /// Queues `saying`, cut anywhere, behind all that is on its way; not before `delay` from now.
    void Say(Dice& dice, const Saying& saying, Time delay);
    /// Queues it as one piece; not before `delay` from now.
    void SayWhole(const Saying& saying, Time delay);
    /// Queues one piece, which arrives at once.
    void Say(std::string bytes);
    /// The connection ends `delay` after all that is on its way has arrived.
    void End(Ending ending, Time delay);
    /// Drops everything but the first `count` bytes that are on their way, and ends the connection with them.
    void EndAfter(std::size_t count, Ending ending);
    bool HasEnd() const { return ending_.has_value(); }

    /// When the next piece arrives, or `never`.
    Time NextArrival() const { return pieces_.empty() ? never : pieces_.front().at; }
    bool HasArrived() const { return NextArrival() <= Scheduler::Instance().Now(); }
    /// Whether what is to be received next is the end of the connection.
    bool IsEnd() const { return pieces_.front().isEnd || IsReset(); }
    /// Whether it has been reset.
    bool IsReset() const;
    /// Takes up to `capacity` bytes of the piece that has arrived. `whole` is what they complete, if anything.
    std::string Take(std::size_t capacity, std::optional<Saying>& whole);

private:
    struct Piece {
        Time at = 0;
        std::string bytes;
        std::optional<Saying> whole = std::nullopt;  ///< what is complete with the last byte
        bool isEnd = false;
    };

    Time ArrivalAfter(Time delay) const;

    std::deque<Piece> pieces_;
    std::optional<Ending> ending_;
};

}  // namespace Morquil::Simulation
