// The gateway's memory: history, audit, and documents such as users and salvos, in one SQLite file.
//
//     Store store({.path = "gateway.db", .post = [&](auto f) { boost::asio::post(io, std::move(f)); }});
//     store.Add(Change{.time = Now(), .device = "cam-1", ...});
//     store.ReadHistory({.device = "cam-1"}, [](HistoryPage page) { ... });
//
// The program keeps working without its database: what cannot be written waits in memory, up to a bound, and
// `Condition` says so.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gateway/store/queries.h"
#include "gateway/store/records.h"

namespace Morquil::Gateway {

/// How much is kept. The oldest rows are purged first.
struct Caps {
    std::chrono::hours historyAge{24 * 90};
    std::chrono::hours auditAge{24 * 365};
    std::int64_t bytes = std::int64_t{4} << 30;
};

struct StoreSettings {
    std::string path;
    /// Runs a function later on the caller's thread. Every callback of the store is passed to it.
    /// Threads: called on any thread of the store; must not block.
    std::function<void(std::function<void()>)> post;
    Caps caps = {};
    std::size_t mostPendingChanges = 65536;
    std::size_t mostPendingAttempts = 16384;
    std::function<Time()> now = Now;  // for ages
};

enum class StoreState { Writing, DiskFull, ReadOnly, Corrupt, Unavailable };
/// "writing", "disk-full", "read-only", "corrupt", "unavailable"
std::string_view NameOf(StoreState state);

/// How the database is.
struct StoreCondition {
    StoreState state = StoreState::Writing;
    std::string sentence = {};      // for people, unless it is `Writing`: what is wrong, and with which file
    std::size_t pending = 0;        // changes, attempts and documents that wait to be written
    std::uint64_t lostChanges = 0;  // since the start, because the queue was full
    std::uint64_t lostAttempts = 0;
    std::int64_t bytes = 0;  // that the database uses
};

class Store {
public:
    /// Opens the file, or makes it, and brings it up to date. Does not fail: `Condition` says what is wrong. A file
    /// that is not a database, or is damaged, is left as it is.
    explicit Store(StoreSettings settings);
    /// Writes what is pending, once, and ends. Callbacks that have not been posted are dropped.
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    // Threads: any, for everything. Nothing waits for the disk except `Load`.

    /// Queues a row. It is in the file within 50 ms while the disk keeps up.
    void Add(Change change);
    void Add(Attempt attempt);

    /// Documents are named texts in collections ("users", "salvos"). Only the latest text of each is written; no change
    /// of a document is ever lost while the program runs.
    void Put(std::string collection, std::string name, std::string text);
    void Erase(std::string collection, std::string name);

    using Documents = std::vector<std::pair<std::string, std::string>>;
    /// All documents of a collection in the order of their names, as they are in the file: for the start of the
    /// program. Nothing if they cannot be read, which is not the same as none.
    std::optional<Documents> Load(const std::string& collection) const;

    void ReadHistory(Query query, std::function<void(HistoryPage)> done);
    void ReadAudit(Query query, std::function<void(AuditPage)> done);
    /// A part of an export that starts at `query.after`; the first one of CSV begins with the names of the columns.
    void ExportHistory(Query query, Format format, std::function<void(Slice)> done);
    void ExportAudit(Query query, Format format, std::function<void(Slice)> done);

    void Verify(std::function<void(Verification)> done);
    /// Copies the database to a new file while it is in use. `done` receives why it failed; empty if it did not.
    void Backup(std::string path, std::function<void(std::string problem)> done);

    /// `done` runs when everything queued before has been written: true; or when the disk has refused it: false.
    void Flush(std::function<void(bool isWritten)> done);

    StoreCondition Condition() const;

private:
    class Parts;
    std::unique_ptr<Parts> parts_;
};

/// The same as `Store::Verify`, for a program of its own. Opens the file for reading only.
Verification VerifyDatabase(const std::string& path);

}  // namespace Morquil::Gateway
