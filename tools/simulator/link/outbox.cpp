#include "simulator/link/outbox.h"

#include <algorithm>
#include <utility>

namespace Morquil::Simulator {

Outbox::Moment Outbox::NotBeforeTheLast(Moment due) const {
    return pieces_.empty() ? due : std::max(due, pieces_.back().due);
}

void Outbox::Add(std::string text, Moment due) {
    if (closed_ || text.empty()) {
        return;
    }
    byteCount_ += text.size();
    pieces_.push_back({.due = NotBeforeTheLast(due), .text = std::move(text)});
}

void Outbox::AddHangUp(Moment due) {
    if (!closed_) {
        pieces_.push_back({.due = NotBeforeTheLast(due), .text = {}, .hangUp = true});
        closed_ = true;
    }
}

void Outbox::DropAfter(Moment now) {
    while (!pieces_.empty() && pieces_.back().due > now) {
        closed_ = closed_ && !pieces_.back().hangUp;
        byteCount_ -= pieces_.back().text.size() - (pieces_.size() == 1 ? taken_ : 0);
        pieces_.pop_back();
    }
    taken_ = pieces_.empty() ? 0 : taken_;
}

Delivery Outbox::Take(Moment now, std::size_t most) {
    if (pieces_.empty() || pieces_.front().due > now) {
        return {};
    }
    Piece& first = pieces_.front();
    Delivery delivery{.bytes = first.text.substr(taken_, most), .hangUp = first.hangUp};
    taken_ += delivery.bytes.size();
    byteCount_ -= delivery.bytes.size();
    if (taken_ == first.text.size()) {
        pieces_.pop_front();
        taken_ = 0;
    }
    return delivery;
}

std::optional<Outbox::Moment> Outbox::NextDue() const {
    return pieces_.empty() ? std::nullopt : std::optional(pieces_.front().due);
}

}  // namespace Morquil::Simulator
