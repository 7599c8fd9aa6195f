// Opening the file, and bringing its tables up to date. Only sources of this folder include this.
#pragma once

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "gateway/store/store.h"

namespace Morquil::Gateway {

using Connection = std::unique_ptr<SQLite::Database>;

/// Makes the file if there is none, readable for its owner only, and runs the migrations that it lacks.
/// Throws: SQLite::Exception.
Connection OpenForWriting(const std::string& path);
Connection OpenForReading(const std::string& path);
/// Reads the file as it is, without its log: where the log's files can neither be read nor made.
Connection OpenUnchanging(const std::string& path);

/// Runs the migrations that a database lacks, each in a transaction of its own that also counts it in `user_version`.
/// Throws: SQLite::Exception, also if the database has more migrations than these.
void Migrate(SQLite::Database& database, std::span<const char* const> migrations);
std::span<const char* const> Migrations();

/// The bytes in use, without pages that are free.
std::int64_t UsedBytes(SQLite::Database& database);
/// The bytes of the file, without its log.
std::int64_t FileBytes(SQLite::Database& database);

struct StoreFailure {
    StoreState state;
    std::string sentence;
};
/// What to say about a failure of the file.
StoreFailure DescribeFailure(const SQLite::Exception& failure, const std::string& path);

}  // namespace Morquil::Gateway
