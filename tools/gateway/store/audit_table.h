// The audit rows of a database. Only sources of this folder include this.
#pragma once

#include <SQLiteCpp/Statement.h>

#include <atomic>

#include "gateway/store/audit_chain.h"
#include "gateway/store/database.h"
#include "gateway/store/queries.h"

namespace Morquil::Gateway {

/// A place in the chain.
struct Anchor {
    std::int64_t id = 0;
    Hash hash{};
};
/// `place`: "purged" or "last".
Anchor ReadAnchor(SQLite::Database& database, const char* place);
void WriteAnchor(SQLite::Database& database, const char* place, const Anchor& anchor);

/// What `AttemptIn` reads.
inline constexpr const char* selectAttempts =
    "SELECT id, time, who, address, device, property, value, outcome, status, request, hash FROM audit";
Attempt AttemptIn(const SQLite::Statement& row);

/// Appends rows. Its caller holds a transaction; after one that has failed, make a new writer.
class AuditWriter {
public:
    explicit AuditWriter(SQLite::Database& database);

    void Add(Attempt attempt);
    /// Call it before the transaction is committed.
    void Finish();

private:
    SQLite::Database& database_;
    SQLite::Statement insert_;
    Anchor last_;
};

AuditPage ReadAuditPage(SQLite::Database& database, const Query& query);

/// Examines all rows, in one view of the database, until `isEnding`.
Verification VerifyAudit(SQLite::Database& database, const std::atomic<bool>& isEnding);
/// The same for a file.
Verification VerifyFile(const std::string& path, const std::atomic<bool>& isEnding);

/// Deletes at most `most` of the oldest rows, of those before `before`, and moves the anchor. Its caller holds a
/// transaction. Returns: how many.
std::size_t PurgeAudit(SQLite::Database& database, Time before, std::size_t most);

}  // namespace Morquil::Gateway
