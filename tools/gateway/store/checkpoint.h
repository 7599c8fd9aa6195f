// Copies the database's log into the database, away from the thread that writes. Only sources of this folder include
// this.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "gateway/store/database.h"
#include "gateway/store/worker.h"

namespace Morquil::Gateway {

/// Threads: the one that writes.
class Checkpoint {
public:
    /// `worker` outlives this.
    Checkpoint(std::string path, Worker& worker) : path_(std::move(path)), worker_(worker) {}

    /// Watches a connection that writes, from now on.
    void Watch(SQLite::Database& database);
    /// Copies the log, if it has grown. Call it after a transaction.
    void AfterCommit(SQLite::Database& database);

private:
    void StartInBackground();

    const std::string path_;
    Worker& worker_;
    int pages_ = 0;  // in the log
    bool hasRun_ = false;
    std::shared_ptr<std::atomic<bool>> isRunning_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace Morquil::Gateway
