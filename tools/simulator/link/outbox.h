#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <limits>
#include <optional>
#include <string>

namespace Morquil::Simulator {

/// What happens next on the way to a host: bytes, the end of the connection, or nothing.
struct Delivery {
    std::string bytes;
    bool hangUp = false;

    bool IsNothing() const { return bytes.empty() && !hangUp; }
};

/// Text on its way to one host, in order. Each piece has the time at which it arrives.
class Outbox {
public:
    using Moment = std::chrono::milliseconds;
    static constexpr std::size_t everything = std::numeric_limits<std::size_t>::max();

    /// Adds text. It never overtakes earlier text, and nothing is added after the end of the connection.
    void Add(std::string text, Moment due);
    void AddHangUp(Moment due);
    /// Drops what is not due yet.
    void DropAfter(Moment now);

    /// Returns up to `most` bytes of the first piece that is due, or the end of the connection.
    Delivery Take(Moment now, std::size_t most = everything);
    /// When `Take` next has something to return.
    std::optional<Moment> NextDue() const;

    bool IsEmpty() const { return pieces_.empty(); }
    /// Whether the end of the connection has been added, whether or not it has been taken.
    bool IsClosed() const { return closed_; }
    std::size_t ByteCount() const { return byteCount_; }

private:
    struct Piece {
        Moment due;
        std::string text;
        bool hangUp = false;
    };

    Moment NotBeforeTheLast(Moment due) const;

    std::deque<Piece> pieces_;
    std::size_t taken_ = 0;  // bytes already taken from the first piece
    std::size_t byteCount_ = 0;
    bool closed_ = false;
};

}  // namespace Morquil::Simulator
