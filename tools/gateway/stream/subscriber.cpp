#include "gateway/stream/subscriber.h"

#include <utility>

namespace Morquil::Gateway {

void Subscriber::Push(const Event& event, SharedText text) {
    if (ended_ != nullptr || isOver_) {
        return;
    }
    queuedBytes_ += text->WithId().size();
    queue_.push_back({std::move(text), event.device});
    if (queuedBytes_ > mostQueued) {
        Overflow();
    }
}

void Subscriber::PushHeartbeat(SharedText text) {
    if (!HasNews() && !isOver_) {
        queuedBytes_ += text->WithId().size();
        queue_.push_back({std::move(text), {}});
    }
}

void Subscriber::End(SharedText text) {
    queue_.clear();
    queuedBytes_ = 0;
    owed_.clear();
    hasGap_ = false;
    ended_ = std::move(text);
}

void Subscriber::Overflow() {
    hasGap_ = true;
    missed_ += queue_.size();
    missedInAll_ += queue_.size();
    for (const Queued& dropped : queue_) {
        if (!dropped.device.empty()) {
            owed_.insert(dropped.device);
        }
    }
    queue_.clear();
    queuedBytes_ = 0;
}

std::vector<StreamPiece> Subscriber::Take(const std::function<SharedText(const std::string&, bool)>& makeSnapshot,
                                          const std::function<SharedText(std::size_t)>& makeGap) {
    std::vector<StreamPiece> pieces;
    std::size_t size = 0;
    const auto add = [&](SharedText text, bool hasId) {
        size += text->WithId().size();
        pieces.push_back({std::move(text), hasId});
    };
    if (std::exchange(hasGap_, false)) {
        add(makeGap(std::exchange(missed_, 0)), false);
    }
    while (!queue_.empty() && size < mostAtOnce) {
        queuedBytes_ -= queue_.front().text->WithId().size();
        add(std::move(queue_.front().text), owed_.empty());
        queue_.pop_front();
    }
    while (queue_.empty() && !owed_.empty() && size < mostAtOnce) {
        const std::string device = std::move(owed_.extract(owed_.begin()).value());
        if (SharedText snapshot = makeSnapshot(device, owed_.empty())) {
            add(std::move(snapshot), owed_.empty());
        }
    }
    if (ended_ != nullptr) {
        add(std::exchange(ended_, nullptr), false);
        isOver_ = true;
    }
    return pieces;
}

}  // namespace Morquil::Gateway
