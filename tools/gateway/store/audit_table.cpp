#include "gateway/store/audit_table.h"

#include "gateway/store/blob.h"
#include "gateway/store/page_reader.h"

namespace Morquil::Gateway {
Attempt AttemptIn(const SQLite::Statement& row) {
    return {.id = row.getColumn(0).getInt64(),
            .time = TimeIn(row.getColumn(1)),
            .who = row.getColumn(2).getString(),
            .address = row.getColumn(3).getString(),
            .device = row.getColumn(4).getString(),
            .property = row.getColumn(5).getString(),
            .value = row.getColumn(6).getString(),
            .outcome = row.getColumn(7).getString(),
            .status = row.getColumn(8).getInt(),
            .requestId = row.getColumn(9).getString(),
            .hash = ToHex(HashIn(row.getColumn(10)))};
}

Anchor ReadAnchor(SQLite::Database& database, const char* place) {
    SQLite::Statement select(database, "SELECT id, hash FROM audit_anchors WHERE place = ?");
    select.bind(1, place);
    return select.executeStep() ? Anchor{select.getColumn(0).getInt64(), HashIn(select.getColumn(1))} : Anchor{};
}

void WriteAnchor(SQLite::Database& database, const char* place, const Anchor& anchor) {
    SQLite::Statement update(database, "INSERT OR REPLACE INTO audit_anchors VALUES (?, ?, ?)");
    update.bind(1, place);
    update.bind(2, anchor.id);
    BindHash(update, 3, anchor.hash);
    update.exec();
}

AuditWriter::AuditWriter(SQLite::Database& database)
    : database_(database),
      insert_(database, "INSERT INTO audit VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
      last_(ReadAnchor(database, "last")) {}

void AuditWriter::Add(Attempt attempt) {
    attempt.id = last_.id + 1;
    last_ = {attempt.id, ChainHash(attempt, last_.hash)};
    insert_.bind(1, attempt.id);
    insert_.bind(2, std::int64_t{attempt.time.time_since_epoch().count()});
    insert_.bindNoCopy(3, attempt.who);
    insert_.bindNoCopy(4, attempt.address);
    insert_.bindNoCopy(5, attempt.device);
    insert_.bindNoCopy(6, attempt.property);
    insert_.bindNoCopy(7, attempt.value);
    insert_.bindNoCopy(8, attempt.outcome);
    insert_.bind(9, attempt.status);
    insert_.bindNoCopy(10, attempt.requestId);
    BindHash(insert_, 11, last_.hash);
    insert_.exec();
    insert_.reset();
    insert_.clearBindings();
}

void AuditWriter::Finish() {
    WriteAnchor(database_, "last", last_);
}

AuditPage ReadAuditPage(SQLite::Database& database, const Query& query) {
    const std::optional<Cursor> cursor = BeginningOf(query);
    if (!cursor) {
        return {.problem = std::string(notACursor)};
    }
    SQLite::Statement select(database, selectAttempts + ConditionOf(query));
    BindCursor(select, query, *cursor);
    if (!query.device.empty()) {
        select.bind(":device", query.device);
    }
    if (!query.property.empty()) {
        select.bind(":property", query.property);
    }
    return ReadRows<Attempt>(select, query, AttemptIn);
}

std::size_t PurgeAudit(SQLite::Database& database, Time before, std::size_t most) {
    // From the front only, and never past a row that is kept: a chain with a hole would be broken.
    SQLite::Statement oldest(database, "SELECT id, time, hash FROM audit ORDER BY id LIMIT ?");
    oldest.bind(1, std::int64_t(most));
    Anchor purged;
    while (oldest.executeStep() && TimeIn(oldest.getColumn(1)) < before) {
        purged = {oldest.getColumn(0).getInt64(), HashIn(oldest.getColumn(2))};
    }
    if (purged.id == 0) {
        return 0;
    }
    oldest.reset();
    SQLite::Statement remove(database, "DELETE FROM audit WHERE id <= ?");
    remove.bind(1, purged.id);
    const int count = remove.exec();
    WriteAnchor(database, "purged", purged);
    return std::size_t(count);
}

}  // namespace Morquil::Gateway
