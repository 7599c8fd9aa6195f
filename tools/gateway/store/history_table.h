// The changes of a database. Only sources of this folder include this.
#pragma once

#include <SQLiteCpp/Statement.h>

#include <string>
#include <unordered_map>

#include "gateway/store/database.h"
#include "gateway/store/queries.h"

namespace Morquil::Gateway {

/// Appends rows. Its caller holds a transaction; after one that has failed, make a new writer.
class HistoryWriter {
public:
    explicit HistoryWriter(SQLite::Database& database);

    void Add(const Change& change);

private:
    std::int64_t NameId(const std::string& text);

    SQLite::Database& database_;
    SQLite::Statement insert_;
    SQLite::Statement findName_;
    SQLite::Statement addName_;
    std::unordered_map<std::string, std::int64_t> names_;
};

HistoryPage ReadHistoryPage(SQLite::Database& database, const Query& query);

/// Delete at most `most` of the oldest rows: of those before `before`, or of all. Returns: how many.
std::size_t PurgeHistory(SQLite::Database& database, Time before, std::size_t most);
std::size_t PurgeHistory(SQLite::Database& database, std::size_t most);

}  // namespace Morquil::Gateway
