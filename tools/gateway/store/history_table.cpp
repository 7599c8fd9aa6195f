#include "gateway/store/history_table.h"

#include "gateway/store/page_reader.h"

namespace Morquil::Gateway {
namespace {

/// The texts of `names`, each read once.
class NameTexts {
public:
    explicit NameTexts(SQLite::Database& database) : select_(database, "SELECT text FROM names WHERE id = ?") {}

    const std::string& Of(std::int64_t id) {
        const auto [found, isNew] = texts_.try_emplace(id);
        if (isNew) {
            select_.bind(1, id);
            found->second = select_.executeStep() ? select_.getColumn(0).getString() : std::string();
            select_.reset();
        }
        return found->second;
    }

private:
    SQLite::Statement select_;
    std::unordered_map<std::int64_t, std::string> texts_;
};

Change ChangeIn(const SQLite::Statement& row, NameTexts& names) {
    return {.id = row.getColumn(0).getInt64(),
            .time = TimeIn(row.getColumn(1)),
            .device = names.Of(row.getColumn(2).getInt64()),
            .property = names.Of(row.getColumn(3).getInt64()),
            .oldValue = row.getColumn(4).getString(),
            .newValue = row.getColumn(5).getString(),
            .origin = names.Of(row.getColumn(6).getInt64()),
            .who = names.Of(row.getColumn(7).getInt64())};
}

// No row has the id 0: a name that is not known matches nothing.
void BindName(SQLite::Statement& select, const char* parameter, SQLite::Database& database, const std::string& name) {
    if (name.empty()) {
        return;
    }
    SQLite::Statement find(database, "SELECT id FROM names WHERE text = ?");
    find.bind(1, name);
    select.bind(parameter, find.executeStep() ? find.getColumn(0).getInt64() : std::int64_t{0});
}

}  // namespace

HistoryWriter::HistoryWriter(SQLite::Database& database)
    : database_(database),
      insert_(database,
              "INSERT INTO history(time, device, property, old, new, origin, who) VALUES (?, ?, ?, ?, ?, ?, ?)"),
      findName_(database, "SELECT id FROM names WHERE text = ?"),
      addName_(database, "INSERT INTO names(text) VALUES (?)") {}

std::int64_t HistoryWriter::NameId(const std::string& text) {
    const auto known = names_.find(text);
    if (known != names_.end()) {
        return known->second;
    }
    findName_.bind(1, text);
    std::int64_t id = findName_.executeStep() ? findName_.getColumn(0).getInt64() : 0;
    findName_.reset();
    if (id == 0) {
        addName_.bind(1, text);
        addName_.exec();
        addName_.reset();
        id = database_.getLastInsertRowid();
    }
    return names_.emplace(text, id).first->second;
}

void HistoryWriter::Add(const Change& change) {
    insert_.bind(1, std::int64_t{change.time.time_since_epoch().count()});
    insert_.bind(2, NameId(change.device));
    insert_.bind(3, NameId(change.property));
    insert_.bindNoCopy(4, change.oldValue);
    insert_.bindNoCopy(5, change.newValue);
    insert_.bind(6, NameId(change.origin));
    insert_.bind(7, NameId(change.who));
    insert_.exec();
    insert_.reset();
    insert_.clearBindings();
}

HistoryPage ReadHistoryPage(SQLite::Database& database, const Query& query) {
    const std::optional<Cursor> cursor = BeginningOf(query);
    if (!cursor) {
        return {.problem = std::string(notACursor)};
    }
    SQLite::Statement select(
        database, "SELECT id, time, device, property, old, new, origin, who FROM history" + ConditionOf(query));
    BindCursor(select, query, *cursor);
    BindName(select, ":device", database, query.device);
    BindName(select, ":property", database, query.property);
    NameTexts names(database);
    return ReadRows<Change>(select, query, [&](const SQLite::Statement& row) { return ChangeIn(row, names); });
}

std::size_t PurgeHistory(SQLite::Database& database, Time before, std::size_t most) {
    SQLite::Statement remove(
        database, "DELETE FROM history WHERE id IN (SELECT id FROM history WHERE time < ? ORDER BY time LIMIT ?)");
    remove.bind(1, std::int64_t{before.time_since_epoch().count()});
    remove.bind(2, std::int64_t(most));
    return std::size_t(remove.exec());
}

std::size_t PurgeHistory(SQLite::Database& database, std::size_t most) {
    SQLite::Statement remove(database, "DELETE FROM history WHERE id IN (SELECT id FROM history ORDER BY id LIMIT ?)");
    remove.bind(1, std::int64_t(most));
    return std::size_t(remove.exec());
}

}  // namespace Morquil::Gateway
