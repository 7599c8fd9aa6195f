#include "simulator/streams/pending_lines.h"

namespace Morquil::Simulator {

bool PendingLines::Add() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return count_ < limit_ || isClosed_; });
    count_ += isClosed_ ? 0 : 1;
    return !isClosed_;
}

void PendingLines::Remove(std::size_t count) {
    const std::lock_guard lock(mutex_);
    count_ -= count;
    changed_.notify_all();
}

void PendingLines::Close() {
    const std::lock_guard lock(mutex_);
    isClosed_ = true;
    changed_.notify_all();
}

}  // namespace Morquil::Simulator
