#include "gateway/store/checkpoint.h"

#include <sqlite3.h>

namespace Morquil::Gateway {
namespace {

constexpr int pagesForBackground = 1000;
// While rows keep coming, the copy in the background never catches up with the last ones, and the log can only start
// again from its beginning when nothing is left to copy. Then the thread that writes copies those few itself.
constexpr int pagesForWriter = 8000;

constexpr const char* copyLog = "PRAGMA wal_checkpoint(PASSIVE)";

int NotePages(void* pages, sqlite3*, const char*, int count) {
    *static_cast<int*>(pages) = count;
    return SQLITE_OK;
}

// What fails here is tried again after a later transaction, and its cause also fails there.
void CopyLog(const std::string& path) {
    try {
        SQLite::Database database(path, SQLite::OPEN_READWRITE);
        database.exec(copyLog);
    } catch (const SQLite::Exception&) {
        return;
    }
}

}  // namespace

void Checkpoint::Watch(SQLite::Database& database) {
    sqlite3_wal_hook(database.getHandle(), NotePages, &pages_);
}

void Checkpoint::AfterCommit(SQLite::Database& database) {
    if (isRunning_->load()) {
        return;
    }
    if (pages_ > pagesForWriter && hasRun_) {
        hasRun_ = false;
        database.exec(copyLog);
    } else if (pages_ > pagesForBackground) {
        StartInBackground();
    }
}

void Checkpoint::StartInBackground() {
    isRunning_->store(true);
    hasRun_ = worker_.Run([path = path_, isRunning = isRunning_] {
        CopyLog(path);
        isRunning->store(false);
    });
    if (!hasRun_) {
        isRunning_->store(false);
    }
}

}  // namespace Morquil::Gateway
