// Reads a page of any table with the columns id, time, device and property. Only sources of this folder include this.
#pragma once

#include <SQLiteCpp/Statement.h>

#include <algorithm>
#include <limits>
#include <string>

#include "gateway/store/cursor.h"
#include "gateway/store/database.h"
#include "gateway/store/queries.h"

namespace Morquil::Gateway {

/// How many rows a page may look at, so that it takes a limited time when few of them match.
inline constexpr std::size_t mostRowsToLookAt = 10000;

/// What `Query` says about a row, as SQL: its parameters are named after the members.
inline std::string ConditionOf(const Query& query) {
    std::string condition = " WHERE time >= :from AND (time, id) < (:time, :id)";
    condition += query.device.empty() ? "" : " AND device = :device";
    condition += query.property.empty() ? "" : " AND property = :property";
    return condition + " ORDER BY time DESC, id DESC";
}

inline void BindCursor(SQLite::Statement& statement, const Query& query, const Cursor& cursor) {
    statement.bind(":from", query.from ? std::int64_t{query.from->time_since_epoch().count()}
                                       : std::numeric_limits<std::int64_t>::min());
    statement.bind(":time", cursor.time);
    statement.bind(":id", cursor.id);
}

/// `read` makes a row from the statement's columns.
template <class Row, class Read>
Page<Row> ReadRows(SQLite::Statement& statement, const Query& query, Read read) {
    Page<Row> page;
    const std::size_t most = std::clamp(query.limit, std::size_t{1}, mostRowsInAPage);
    std::size_t seen = 0;
    Cursor last;
    while (statement.executeStep()) {
        if (page.rows.size() == most || seen == mostRowsToLookAt) {
            page.next = FormatCursor(last);
            break;
        }
        Row row = read(statement);
        last = {row.time.time_since_epoch().count(), row.id};
        ++seen;
        if (!query.allowed || query.allowed(row.device, row.property)) {
            page.rows.push_back(std::move(row));
        }
    }
    return page;
}

inline Time TimeIn(const SQLite::Column& column) {
    return Time(std::chrono::milliseconds(column.getInt64()));
}

}  // namespace Morquil::Gateway
