#include "gateway/store/store.h"

#include <unistd.h>

#include <atomic>
#include <utility>

#include "gateway/store/audit_table.h"
#include "gateway/store/backup.h"
#include "gateway/store/export_text.h"
#include "gateway/store/history_table.h"
#include "gateway/store/pending.h"
#include "gateway/store/worker.h"
#include "gateway/store/writer.h"

namespace Morquil::Gateway {
namespace {

constexpr std::size_t mostReads = 256;
constexpr std::size_t mostLongJobs = 16;

// Threads: those of one worker.
class ReadConnection {
public:
    explicit ReadConnection(std::string path) : path_(std::move(path)) {}

    /// What `read` makes of the database; a result with a problem if the database cannot be read.
    template <class Result, class Read>
    Result Use(Read read) {
        try {
            if (!database_) {
                database_ = OpenForReading(path_);
            }
            return read(*database_);
        } catch (const SQLite::Exception& failure) {
            database_.reset();
            Result result;
            result.problem = DescribeFailure(failure, path_).sentence;
            return result;
        }
    }

private:
    const std::string path_;
    Connection database_;
};

template <class Row>
Slice Render(const Page<Row>& page, const Query& query, Format format) {
    Slice slice{.text = {}, .next = page.next, .problem = page.problem};
    if (format == Format::Csv && query.after.empty() && page.problem.empty()) {
        slice.text = CsvHeader(static_cast<const Row*>(nullptr));
    }
    for (const Row& row : page.rows) {
        slice.text += format == Format::Csv ? ToCsv(row) : ToJsonLine(row);
    }
    return slice;
}

template <class Row>
Page<Row> ReadPage(SQLite::Database& database, const Query& query);
template <>
HistoryPage ReadPage<Change>(SQLite::Database& database, const Query& query) {
    return ReadHistoryPage(database, query);
}
template <>
AuditPage ReadPage<Attempt>(SQLite::Database& database, const Query& query) {
    return ReadAuditPage(database, query);
}

Store::Documents ReadDocuments(SQLite::Database& database, const std::string& collection) {
    SQLite::Statement select(database, "SELECT name, text FROM documents WHERE collection = ? ORDER BY name");
    select.bind(1, collection);
    Store::Documents documents;
    while (select.executeStep()) {
        documents.emplace_back(select.getColumn(0).getString(), select.getColumn(1).getString());
    }
    return documents;
}

// Nothing if the file cannot be read: `Store::Condition` says why.
std::optional<Store::Documents> TryToRead(Connection (*open)(const std::string&), const std::string& path,
                                          const std::string& collection) {
    try {
        return ReadDocuments(*open(path), collection);
    } catch (const SQLite::Exception&) {
        return std::nullopt;
    }
}

}  // namespace

class Store::Parts {
public:
    explicit Parts(StoreSettings given)
        : settings(std::move(given)),
          pending({settings.mostPendingChanges, settings.mostPendingAttempts}),
          connection(settings.path),
          writer(settings, pending, longJobs) {}
    ~Parts() {
        isEnding.store(true);
        pending.End();
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    /// Runs `read` on the thread of `worker` and passes its result to `done` on the caller's.
    template <class Result, class Read>
    void Answer(Worker& worker, std::function<void(Result)> done, Read read) {
        const auto shared = std::make_shared<std::function<void(Result)>>(std::move(done));
        const auto answer = [this, shared](Result result) {
            settings.post([shared, result = std::move(result)]() mutable { (*shared)(std::move(result)); });
        };
        const bool isAccepted = worker.Run([answer, read = std::move(read)] { answer(read()); });
        if (!isAccepted) {
            Result result;
            result.problem = "Too many requests to the database are waiting";
            answer(std::move(result));
        }
    }
    template <class Row>
    void Read(Query query, std::function<void(Page<Row>)> done) {
        Answer(reads, std::move(done), [this, query = std::move(query)] {
            return connection.Use<Page<Row>>(
                [&](SQLite::Database& database) { return ReadPage<Row>(database, query); });
        });
    }
    template <class Row>
    void Export(Query query, Format format, std::function<void(Slice)> done) {
        query.limit = mostRowsInAPage;
        Answer(reads, std::move(done), [this, format, query = std::move(query)] {
            return Render(
                connection.Use<Page<Row>>([&](SQLite::Database& database) { return ReadPage<Row>(database, query); }),
                query, format);
        });
    }

    const StoreSettings settings;
    std::atomic<bool> isEnding = false;
    Pending pending;
    ReadConnection connection;
    Worker reads{mostReads};
    Worker longJobs{mostLongJobs};
    Writer writer;
};

std::string_view NameOf(StoreState state) {
    switch (state) {
        case StoreState::Writing:
            return "writing";
        case StoreState::DiskFull:
            return "disk-full";
        case StoreState::ReadOnly:
            return "read-only";
        case StoreState::Corrupt:
            return "corrupt";
        case StoreState::Unavailable:
            break;
    }
    return "unavailable";
}

Store::Store(StoreSettings settings) : parts_(std::make_unique<Parts>(std::move(settings))) {}

Store::~Store() = default;

void Store::Add(Change change) {
    parts_->pending.Add(std::move(change));
}

void Store::Add(Attempt attempt) {
    parts_->pending.Add(std::move(attempt));
}

void Store::Put(std::string collection, std::string name, std::string text) {
    parts_->pending.Put({std::move(collection), std::move(name)}, std::move(text));
}

void Store::Erase(std::string collection, std::string name) {
    parts_->pending.Put({std::move(collection), std::move(name)}, std::nullopt);
}

std::optional<Store::Documents> Store::Load(const std::string& collection) const {
    const std::string& path = parts_->settings.path;
    if (auto documents = TryToRead(OpenForReading, path, collection)) {
        return documents;
    }
    // On a disk that is read-only, the log cannot be made. If there is one, the file alone would be out of date.
    const bool hasLog = access((path + "-wal").c_str(), F_OK) == 0;
    return hasLog ? std::nullopt : TryToRead(OpenUnchanging, path, collection);
}

void Store::ReadHistory(Query query, std::function<void(HistoryPage)> done) {
    parts_->Read<Change>(std::move(query), std::move(done));
}

void Store::ReadAudit(Query query, std::function<void(AuditPage)> done) {
    parts_->Read<Attempt>(std::move(query), std::move(done));
}

void Store::ExportHistory(Query query, Format format, std::function<void(Slice)> done) {
    parts_->Export<Change>(std::move(query), format, std::move(done));
}

void Store::ExportAudit(Query query, Format format, std::function<void(Slice)> done) {
    parts_->Export<Attempt>(std::move(query), format, std::move(done));
}

void Store::Verify(std::function<void(Verification)> done) {
    parts_->Answer(parts_->longJobs, std::move(done),
                   [parts = parts_.get()] { return VerifyFile(parts->settings.path, parts->isEnding); });
}

void Store::Backup(std::string path, std::function<void(std::string)> done) {
    struct Result {
        std::string problem;
    };
    parts_->Answer<Result>(
        parts_->longJobs, [done = std::move(done)](const Result& result) { done(result.problem); },
        [parts = parts_.get(), path = std::move(path)] {
            return Result{BackUp(parts->settings.path, path, parts->isEnding)};
        });
}

void Store::Flush(std::function<void(bool)> done) {
    parts_->pending.AddFlush(std::move(done));
}

StoreCondition Store::Condition() const {
    return parts_->writer.Condition();
}

Verification VerifyDatabase(const std::string& path) {
    return VerifyFile(path, false);
}

}  // namespace Morquil::Gateway
