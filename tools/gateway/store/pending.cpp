#include "gateway/store/pending.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Morquil::Gateway {
namespace {

template <class Row>
void MoveSome(std::deque<Row>& from, std::deque<Row>& to, std::size_t most) {
    const auto end = from.begin() + std::ptrdiff_t(std::min(most, from.size()));
    to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(end));
    from.erase(from.begin(), end);
}

}  // namespace

template <class Row>
bool Pending::Accept(std::deque<Row>& waiting, std::size_t taken, std::size_t most, std::uint64_t& lost, Row row) {
    if (waiting.size() + taken >= most) {
        ++lost;
        return false;
    }
    waiting.push_back(std::move(row));
    return true;
}

void Pending::Add(Change change) {
    const Held held(mutex_);
    if (Accept(waiting_.changes, takenChanges_, bounds_.changes, lostChanges_, std::move(change))) {
        wakeup_.WakeAll();
    }
}

void Pending::Add(Attempt attempt) {
    const Held held(mutex_);
    if (Accept(waiting_.attempts, takenAttempts_, bounds_.attempts, lostAttempts_, std::move(attempt))) {
        wakeup_.WakeAll();
    }
}

void Pending::Put(Batch::Name name, std::optional<std::string> text) {
    const Held held(mutex_);
    waiting_.documents.insert_or_assign(std::move(name), std::move(text));
    wakeup_.WakeAll();
}

void Pending::AddFlush(std::function<void(bool)> flush) {
    const Held held(mutex_);
    waiting_.flushes.push_back(std::move(flush));
    wakeup_.WakeAll();
}

void Pending::End() {
    const Held held(mutex_);
    isEnding_ = true;
    wakeup_.WakeAll();
}

Pending::Counts Pending::Count() const {
    const Held held(mutex_);
    return {waiting_.changes.size() + takenChanges_ + waiting_.attempts.size() + takenAttempts_ +
                waiting_.documents.size() + takenDocuments_,
            lostChanges_, lostAttempts_};
}

bool Pending::IsEmpty() const {
    return !waiting_.HasRows() && waiting_.flushes.empty();
}

bool Pending::Wait(std::chrono::steady_clock::time_point end, std::chrono::milliseconds gather) {
    const Held held(mutex_);
    while (IsEmpty() && !isEnding_ && std::chrono::steady_clock::now() < end) {
        wakeup_.WaitUntil(mutex_, end);
    }
    const auto gathered = std::chrono::steady_clock::now() + gather;
    while (!IsEmpty() && !isEnding_ && waiting_.flushes.empty() && waiting_.changes.size() < bounds_.perBatch &&
           std::chrono::steady_clock::now() < gathered) {
        wakeup_.WaitUntil(mutex_, gathered);
    }
    return !isEnding_;
}

void Pending::Pause(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    const Held held(mutex_);
    while (!isEnding_ && std::chrono::steady_clock::now() < end) {
        wakeup_.WaitUntil(mutex_, end);
    }
}

std::size_t Pending::RoomIn(const Batch& batch) const {
    const std::size_t rows = batch.changes.size() + batch.attempts.size();
    return rows < bounds_.perBatch ? bounds_.perBatch - rows : 0;
}

void Pending::TakeInto(Batch& batch) {
    const Held held(mutex_);
    MoveSome(waiting_.attempts, batch.attempts, RoomIn(batch));
    MoveSome(waiting_.changes, batch.changes, RoomIn(batch));
    for (auto& [name, text] : waiting_.documents) {
        batch.documents.insert_or_assign(name, std::move(text));
    }
    waiting_.documents.clear();
    if (!waiting_.HasRows()) {
        batch.flushes.insert(batch.flushes.end(), std::make_move_iterator(waiting_.flushes.begin()),
                             std::make_move_iterator(waiting_.flushes.end()));
        waiting_.flushes.clear();
    }
    takenChanges_ = batch.changes.size();
    takenAttempts_ = batch.attempts.size();
    takenDocuments_ = batch.documents.size();
}

std::vector<std::function<void(bool)>> Pending::TakeFlushes() {
    const Held held(mutex_);
    return std::exchange(waiting_.flushes, {});
}

void Pending::Written() {
    const Held held(mutex_);
    takenChanges_ = 0;
    takenAttempts_ = 0;
    takenDocuments_ = 0;
}

}  // namespace Morquil::Gateway
