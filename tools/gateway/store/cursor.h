// Where a page of rows continues.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "gateway/store/queries.h"

namespace Morquil::Gateway {

/// Rows are ordered by time, and those of the same time by id. A page has the rows before its cursor.
struct Cursor {
    std::int64_t time = 0;  // milliseconds since 1970
    std::int64_t id = 0;
};

/// Where the page of `query` begins; nothing if `query.after` is not a text that `FormatCursor` made.
std::optional<Cursor> BeginningOf(const Query& query);
std::string FormatCursor(const Cursor& cursor);

}  // namespace Morquil::Gateway
