// The thread that writes. Only sources of this folder include this.
#pragma once

#include <chrono>
#include <memory>
#include <thread>

#include "core/thread_safety.h"
#include "gateway/store/checkpoint.h"
#include "gateway/store/database.h"
#include "gateway/store/mutex.h"
#include "gateway/store/pending.h"
#include "gateway/store/purge.h"

namespace Morquil::Gateway {

class AuditWriter;
class HistoryWriter;

class Writer {
public:
    /// Opens the file before it returns. `pending` and `worker` outlive this.
    Writer(const StoreSettings& settings, Pending& pending, Worker& worker);
    /// The end of `pending` must have come: writes what is left, once.
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// Threads: any.
    StoreCondition Condition() const;

private:
    void Run();
    void TryToOpen();
    void Open();
    void WritePending();
    void Write();
    void WriteDocuments();
    /// Returns: how many rows have been lost so far.
    std::uint64_t NoteLosses();
    void Purge();
    void Failed(const SQLite::Exception& failure);
    void Succeeded();
    void Answer(const std::vector<std::function<void(bool)>>& flushes, bool isWritten) const;

    const StoreSettings settings_;
    Pending& pending_;
    Checkpoint checkpoint_;
    Connection database_;
    std::unique_ptr<HistoryWriter> history_;
    std::unique_ptr<AuditWriter> audit_;
    Batch batch_;  // in progress, or not written yet because the file refuses it
    Gateway::Purge purge_;
    std::chrono::steady_clock::time_point nextPurge_ = {};
    std::chrono::milliseconds retryAfter_{0};
    std::uint64_t notedLosses_ = 0;

    mutable Mutex mutex_;
    StoreCondition condition_ GUARDED_BY(mutex_);
    std::thread thread_;
};

}  // namespace Morquil::Gateway
