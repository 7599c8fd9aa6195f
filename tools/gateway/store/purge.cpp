#include "gateway/store/purge.h"

#include <SQLiteCpp/Transaction.h>

#include <algorithm>

#include "gateway/store/audit_table.h"
#include "gateway/store/history_table.h"

namespace Morquil::Gateway {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t fewestRows = 10;
constexpr std::size_t mostRows = 500;

bool DeleteOld(SQLite::Database& database, const Caps& caps, Time now, std::size_t rows) {
    return PurgeHistory(database, now - caps.historyAge, rows) > 0 ||
           PurgeAudit(database, now - caps.auditAge, rows) > 0;
}

bool DeleteOldest(SQLite::Database& database, std::size_t rows) {
    return PurgeHistory(database, rows) > 0 || PurgeAudit(database, Time::max(), rows) > 0;
}

}  // namespace

bool Purge::DeleteSlice(SQLite::Database& database, Time now) const {
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    const bool hasDeleted =
        DeleteOld(database, caps_, now, rows_) || (UsedBytes(database) > caps_.bytes && DeleteOldest(database, rows_));
    transaction.commit();
    return hasDeleted;
}

bool Purge::Step(SQLite::Database& database, Time now) {
    const auto start = std::chrono::steady_clock::now();
    bool hasMore = DeleteSlice(database, now);
    Adapt(std::chrono::steady_clock::now() - start);
    // Free pages are used again; they are given back only when the file is larger than it may be.
    if (!hasMore && FileBytes(database) > caps_.bytes && FileBytes(database) > UsedBytes(database)) {
        database.exec("PRAGMA incremental_vacuum(" + std::to_string(rows_) + ")");
        hasMore = true;
    }
    return hasMore;
}

void Purge::Adapt(std::chrono::steady_clock::duration took) {
    if (took > 15ms) {
        rows_ = std::max(rows_ / 2, fewestRows);
    } else if (took < 5ms) {
        rows_ = std::min(rows_ * 2, mostRows);
    }
}

}  // namespace Morquil::Gateway
