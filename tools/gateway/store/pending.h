// What waits to be written: a bounded queue between the threads that add rows and the one that writes them.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/thread_safety.h"
#include "gateway/store/mutex.h"
#include "gateway/store/records.h"

namespace Morquil::Gateway {

/// What is written in one transaction.
struct Batch {
    using Name = std::pair<std::string, std::string>;  // collection and name

    std::deque<Change> changes = {};
    std::deque<Attempt> attempts = {};
    std::map<Name, std::optional<std::string>> documents = {};  // nothing: erase it
    /// Wait until everything added before them is written. Only in the last batch of what is pending.
    std::vector<std::function<void(bool isWritten)>> flushes = {};

    bool HasRows() const { return !changes.empty() || !attempts.empty() || !documents.empty(); }
};

class Pending {
public:
    struct Bounds {
        std::size_t changes;
        std::size_t attempts;
        std::size_t perBatch = 2000;
    };
    struct Counts {
        std::size_t pending = 0;  // also what has been taken and is not written yet
        std::uint64_t lostChanges = 0;
        std::uint64_t lostAttempts = 0;
    };

    explicit Pending(Bounds bounds) : bounds_(bounds) {}

    // Threads: any.
    void Add(Change change);
    void Add(Attempt attempt);
    void Put(Batch::Name name, std::optional<std::string> text);
    void AddFlush(std::function<void(bool)> flush);
    void End();
    Counts Count() const;

    // Threads: the one that writes.

    /// Waits until there is something to write, or until `end`, or the end of everything. When something comes, waits
    /// for more for up to `gather`, so that many rows share a transaction. Returns: whether to go on after this.
    bool Wait(std::chrono::steady_clock::time_point end, std::chrono::milliseconds gather);
    /// Waits for up to `time`, or until the end of everything.
    void Pause(std::chrono::milliseconds time);
    /// Moves the oldest rows into `batch`, which may hold what could not be written before; that stays in front.
    void TakeInto(Batch& batch);
    /// All that wait, when what is before them cannot be written.
    std::vector<std::function<void(bool)>> TakeFlushes();
    /// What was taken has been written.
    void Written();

private:
    bool IsEmpty() const REQUIRES(mutex_);
    std::size_t RoomIn(const Batch& batch) const;
    template <class Row>
    bool Accept(std::deque<Row>& waiting, std::size_t taken, std::size_t most, std::uint64_t& lost, Row row)
        REQUIRES(mutex_);

    const Bounds bounds_;
    mutable Mutex mutex_;
    Wakeup wakeup_;
    Batch waiting_ GUARDED_BY(mutex_);
    std::size_t takenChanges_ GUARDED_BY(mutex_) = 0;
    std::size_t takenAttempts_ GUARDED_BY(mutex_) = 0;
    std::size_t takenDocuments_ GUARDED_BY(mutex_) = 0;
    std::uint64_t lostChanges_ GUARDED_BY(mutex_) = 0;
    std::uint64_t lostAttempts_ GUARDED_BY(mutex_) = 0;
    bool isEnding_ GUARDED_BY(mutex_) = false;
};

}  // namespace Morquil::Gateway
