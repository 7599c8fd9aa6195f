// Looks for audit rows that were changed, removed, added or moved by anything but this program.
#include <SQLiteCpp/Transaction.h>

#include "gateway/store/audit_table.h"
#include "gateway/store/blob.h"

namespace Morquil::Gateway {
namespace {

std::string Row(std::int64_t id) {
    return "row " + std::to_string(id);
}

std::string Missing(std::int64_t first, std::int64_t last) {
    return first == last ? Row(first) + " is missing"
                         : "rows " + std::to_string(first) + " to " + std::to_string(last) + " are missing";
}

// Of a row and the place in the chain before it; empty if it is as it was written.
std::string ProblemOf(const Attempt& attempt, const Hash& stored, const Anchor& before) {
    if (attempt.id != before.id + 1) {
        return attempt.id > before.id ? Missing(before.id + 1, attempt.id - 1) : Row(attempt.id) + " has been added";
    }
    return ChainHash(attempt, before.hash) == stored ? "" : Row(attempt.id) + " has been changed or moved";
}

std::string ProblemAtEnd(const Anchor& found, const Anchor& last) {
    if (found.id < last.id) {
        return Missing(found.id + 1, last.id);
    }
    if (found.id > last.id) {
        return Row(last.id + 1) + " has been added";
    }
    return found.hash == last.hash ? "" : "the anchor of the last row has been changed";
}

}  // namespace

Verification VerifyAudit(SQLite::Database& database, const std::atomic<bool>& isEnding) {
    const SQLite::Transaction view(database);
    Anchor place = ReadAnchor(database, "purged");
    Verification result{.first = place.id + 1, .last = place.id};
    SQLite::Statement rows(database, std::string(selectAttempts) + " ORDER BY id");
    while (result.problem.empty() && rows.executeStep()) {
        if (isEnding.load(std::memory_order_relaxed)) {
            result.problem = "the examination was stopped";
            break;
        }
        const Attempt attempt = AttemptIn(rows);
        const Hash stored = HashIn(rows.getColumn(10));
        result.problem = ProblemOf(attempt, stored, place);
        if (result.problem.empty()) {
            ++result.rows;
            place = {attempt.id, stored};
        }
    }
    if (result.problem.empty()) {
        result.problem = ProblemAtEnd(place, ReadAnchor(database, "last"));
    }
    result.last = place.id;
    result.head = ToHex(place.hash);
    result.isIntact = result.problem.empty();
    return result;
}

Verification VerifyFile(const std::string& path, const std::atomic<bool>& isEnding) {
    try {
        const Connection database = OpenForReading(path);
        return VerifyAudit(*database, isEnding);
    } catch (const SQLite::Exception& failure) {
        return {.problem = DescribeFailure(failure, path).sentence};
    }
}

}  // namespace Morquil::Gateway
