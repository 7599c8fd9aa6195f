#include "tests/simulation/wire.h"

#include <algorithm>
#include <utility>

namespace Morquil::Simulation {

Time Wire::ArrivalAfter(Time delay) const {
    const Time soonest = Scheduler::Instance().Now() + delay;
    return pieces_.empty() ? soonest : std::max(soonest, pieces_.back().at);
}

void Wire::Say(Dice& dice, const Saying& saying, Time delay) {
    if (isBroken_) {
        return;
    }
    std::size_t from = 0;
    while (dice.OneIn(4) && saying.bytes.size() - from > 1) {
        const std::size_t length = 1 + dice.Below(static_cast<std::uint32_t>(saying.bytes.size() - from - 1));
        pieces_.push_back({.at = ArrivalAfter(delay), .bytes = saying.bytes.substr(from, length)});
        from += length;
        delay = dice.Below(3);
    }
    pieces_.push_back({.at = ArrivalAfter(delay), .bytes = saying.bytes.substr(from), .whole = saying});
}

void Wire::Say(std::string bytes) {
    if (!isBroken_ && !bytes.empty()) {
        pieces_.push_back({.at = ArrivalAfter(0), .bytes = std::move(bytes)});
    }
}

void Wire::Break(Time delay) {
    if (!isBroken_) {
        pieces_.push_back({.at = ArrivalAfter(delay), .bytes = {}, .isEnd = true});
        isBroken_ = true;
    }
}

void Wire::BreakAfter(std::size_t count) {
    std::size_t kept = 0;
    for (auto piece = pieces_.begin(); piece != pieces_.end(); ++piece) {
        if (kept + piece->bytes.size() > count) {
            piece->bytes.resize(count - kept);
            piece->whole.reset();
            pieces_.erase(piece->bytes.empty() ? piece : std::next(piece), pieces_.end());
            break;
        }
        kept += piece->bytes.size();
    }
    Break(0);
}

std::string Wire::Take(std::size_t capacity, std::optional<Saying>& whole) {
    Piece& piece = pieces_.front();
    std::string taken = piece.bytes.substr(0, capacity);
    piece.bytes.erase(0, taken.size());
    if (piece.bytes.empty()) {
        whole = std::move(piece.whole);
        pieces_.pop_front();
    }
    return taken;
}

}  // namespace Morquil::Simulation
