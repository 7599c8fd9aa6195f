#include "gateway/store/database.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace Morquil::Gateway {
namespace {

constexpr int busyMilliseconds = 2000;  // another process may be opening the file, which then recovers its log

// Hashes of passwords are in it. The log's files get the mode of the database.
void MakeForOwnerOnly(const std::string& path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file >= 0) {
        close(file);
    }
}

std::int64_t Pragma(SQLite::Database& database, const char* statement) {
    return database.execAndGet(statement).getInt64();
}

void RequireWritable(SQLite::Database& database) {
    if (sqlite3_db_readonly(database.getHandle(), "main") == 1) {
        throw SQLite::Exception("attempt to write a readonly database", SQLITE_READONLY);
    }
}

// The log is copied into the database by another thread (see checkpoint.h), because that may wait for the disk.
void Configure(SQLite::Database& database) {
    database.exec("PRAGMA auto_vacuum = INCREMENTAL");  // only has an effect before there are tables
    if (database.execAndGet("PRAGMA journal_mode = WAL").getString() != "wal") {
        throw SQLite::Exception("its file system cannot share memory", SQLITE_IOERR);
    }
    database.exec("PRAGMA synchronous = NORMAL");
    database.exec("PRAGMA wal_autocheckpoint = 0");
    database.exec("PRAGMA journal_size_limit = 67108864");
}

}  // namespace

Connection OpenForWriting(const std::string& path) {
    MakeForOwnerOnly(path);
    auto database =
        std::make_unique<SQLite::Database>(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, busyMilliseconds);
    RequireWritable(*database);
    Configure(*database);
    Migrate(*database, Migrations());
    return database;
}

Connection OpenForReading(const std::string& path) {
    return std::make_unique<SQLite::Database>(path, SQLite::OPEN_READONLY, busyMilliseconds);
}

Connection OpenUnchanging(const std::string& path) {
    std::string escaped;
    for (const char letter : path) {
        escaped += letter == '%' ? "%25" : letter == '?' ? "%3f" : letter == '#' ? "%23" : std::string(1, letter);
    }
    return std::make_unique<SQLite::Database>("file:" + escaped + "?immutable=1",
                                              SQLite::OPEN_READONLY | SQLite::OPEN_URI);
}

void Migrate(SQLite::Database& database, std::span<const char* const> migrations) {
    const std::int64_t version = Pragma(database, "PRAGMA user_version");
    if (version > std::int64_t(migrations.size())) {
        throw SQLite::Exception("it was written by a newer version of this program", SQLITE_SCHEMA);
    }
    for (std::size_t next = std::size_t(version); next < migrations.size(); ++next) {
        SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
        database.exec(migrations[next]);
        database.exec("PRAGMA user_version = " + std::to_string(next + 1));
        transaction.commit();
    }
}

std::int64_t UsedBytes(SQLite::Database& database) {
    const std::int64_t pages = Pragma(database, "PRAGMA page_count") - Pragma(database, "PRAGMA freelist_count");
    return pages * Pragma(database, "PRAGMA page_size");
}

std::int64_t FileBytes(SQLite::Database& database) {
    return Pragma(database, "PRAGMA page_count") * Pragma(database, "PRAGMA page_size");
}

StoreFailure DescribeFailure(const SQLite::Exception& failure, const std::string& path) {
    switch (failure.getErrorCode() & 0xFF) {
        case SQLITE_FULL:
            return {StoreState::DiskFull, "The disk of " + path + " is full"};
        case SQLITE_READONLY:
            return {StoreState::ReadOnly, path + " cannot be written: it is read-only"};
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return {StoreState::Corrupt, path + " is damaged, or not a database: restore a backup"};
        default:
            return {StoreState::Unavailable, path + " cannot be used: " + failure.what()};
    }
}

}  // namespace Morquil::Gateway
