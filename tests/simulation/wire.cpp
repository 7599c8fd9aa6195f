#include "tests/simulation/wire.h"

#include <algorithm>
#include <utility>

namespace Morquil::Simulation {

namespace {

/// What is left of something that is cut behind `length` bytes: of acknowledgements those before, of all else nothing.
std::optional<Saying> BeginningOf(std::optional<Saying> saying, std::size_t length) {
    if (saying && saying->count > 1) {
        saying->count = length * saying->count / saying->bytes.size();
        saying->bytes.resize(length);
        return saying->count > 0 ? saying : std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

Time Wire::ArrivalAfter(Time delay) const {
    const Time soonest = Scheduler::Instance().Now() + delay;
    return pieces_.empty() ? soonest : std::max(soonest, pieces_.back().at);
}

void Wire::Say(Dice& dice, const Saying& saying, Time delay) {
    if (HasEnd()) {
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

void Wire::SayWhole(const Saying& saying, Time delay) {
    if (!HasEnd()) {
        pieces_.push_back({.at = ArrivalAfter(delay), .bytes = saying.bytes, .whole = saying});
    }
}

void Wire::Say(std::string bytes) {
    if (!HasEnd() && !bytes.empty()) {
        pieces_.push_back({.at = ArrivalAfter(0), .bytes = std::move(bytes)});
    }
}

void Wire::End(Ending ending, Time delay) {
    if (!HasEnd()) {
        pieces_.push_back({.at = ArrivalAfter(delay), .bytes = {}, .isEnd = true});
        ending_ = ending;
    }
}

void Wire::EndAfter(std::size_t count, Ending ending) {
    std::size_t kept = 0;
    for (auto piece = pieces_.begin(); piece != pieces_.end(); ++piece) {
        if (kept + piece->bytes.size() > count) {
            piece->bytes.resize(count - kept);
            piece->whole = BeginningOf(piece->whole, piece->bytes.size());
            pieces_.erase(piece->bytes.empty() ? piece : std::next(piece), pieces_.end());
            break;
        }
        kept += piece->bytes.size();
    }
    End(ending, 0);
}

bool Wire::IsReset() const {
    return ending_ == Ending::Reset && pieces_.back().at <= Scheduler::Instance().Now();
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
