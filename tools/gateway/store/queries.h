// Questions to the database, and its answers.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/store/records.h"

namespace Morquil::Gateway {

/// Which rows. An empty text means any.
struct Query {
    std::string device = {};
    std::string property = {};
    std::optional<Time> from = {};  // inclusive
    std::optional<Time> to = {};    // exclusive
    std::size_t limit = 100;        // rows in a page, at most `mostRowsInAPage`
    std::string after = {};         // `next` of the previous page
    /// Whether the caller may see rows of this device and property; empty means all of them.
    /// Threads: called on a thread of the store.
    std::function<bool(std::string_view device, std::string_view property)> allowed = {};
};
inline constexpr std::size_t mostRowsInAPage = 1000;

/// The problem of a query whose `after` is not the `next` of a page.
inline constexpr std::string_view notACursor = "after is not the next of a page";

/// Rows, the newest first.
template <class Row>
struct Page {
    std::vector<Row> rows = {};
    /// Continues after the last row; empty at the end. A page may be short, even empty, and still have a next one.
    std::string next = {};
    std::string problem = {};  // why there are no rows; empty if all is well
};
using HistoryPage = Page<Change>;
using AuditPage = Page<Attempt>;

enum class Format { Csv, JsonLines };

/// A part of an export: ask for the next one when this one has been sent.
struct Slice {
    std::string text = {};
    std::string next = {};  // empty at the end
    std::string problem = {};
};

/// What an examination of the audit rows found.
struct Verification {
    bool isIntact = false;
    std::uint64_t rows = 0;  // examined
    std::int64_t first = 0;  // the oldest row that is kept; older ones have been purged
    std::int64_t last = 0;
    std::string head = {};     // hash of the last row. A copy kept elsewhere shows whether all rows were rewritten
    std::string problem = {};  // "row 17 has been changed"
};

}  // namespace Morquil::Gateway
