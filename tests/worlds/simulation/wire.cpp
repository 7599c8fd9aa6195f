#include "tests/worlds/simulation/wire.h"

#include <algorithm>
#include <utility>

namespace Morquil::Testing::Worlds {

namespace {

/// What is left of a message that is cut after `length` bytes: of acknowledgements those before, of all others nothing.
std::optional<DeviceMessage> BeginningOf(std::optional<DeviceMessage> message, std::size_t length) {
    if (message && message->count > 1) {
        message->count = length * message->count / message->bytes.size();
        message->bytes.resize(length);
        return message->count > 0 ? message : std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

Time Wire::ArrivalAfter(Time delay) const {
    const Time soonest = Scheduler::Instance().Now() + delay;
    return pieces_.empty() ? soonest : std::max(soonest, pieces_.back().at);
}

void Wire::Say(Dice& dice, const DeviceMessage& message, Time delay) {
    if (HasEnd()) {
        return;
    }
    std::size_t from = 0;
    while (dice.OneIn(4) && message.bytes.size() - from > 1) {
        const std::size_t length = 1 + dice.Below(static_cast<std::uint32_t>(message.bytes.size() - from - 1));
        pieces_.push_back({.at = ArrivalAfter(delay), .bytes = message.bytes.substr(from, length)});
        from += length;
        delay = dice.Below(3);
    }
    pieces_.push_back({.at = ArrivalAfter(delay), .bytes = message.bytes.substr(from), .whole = message});
}

void Wire::SayWhole(const DeviceMessage& message, Time delay) {
    if (!HasEnd()) {
        pieces_.push_back({.at = ArrivalAfter(delay), .bytes = message.bytes, .whole = message});
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

std::string Wire::Take(std::size_t capacity, std::optional<DeviceMessage>& whole) {
    Piece& piece = pieces_.front();
    std::string taken = piece.bytes.substr(0, capacity);
    piece.bytes.erase(0, taken.size());
    if (piece.bytes.empty()) {
        whole = std::move(piece.whole);
        pieces_.pop_front();
    }
    return taken;
}

}  // namespace Morquil::Testing::Worlds
