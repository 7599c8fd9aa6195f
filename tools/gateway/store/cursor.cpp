#include "gateway/store/cursor.h"

#include <charconv>
#include <limits>

namespace Morquil::Gateway {
namespace {

bool ReadNumber(std::string_view text, std::int64_t& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

std::optional<Cursor> BeginningOf(const Query& query) {
    using Limits = std::numeric_limits<std::int64_t>;
    if (query.after.empty()) {
        return Cursor{query.to ? query.to->time_since_epoch().count() : Limits::max(), Limits::min()};
    }
    const std::string_view text = query.after;
    const std::size_t point = text.find('.');
    Cursor cursor;
    if (point == text.npos || !ReadNumber(text.substr(0, point), cursor.time) ||
        !ReadNumber(text.substr(point + 1), cursor.id)) {
        return std::nullopt;
    }
    return cursor;
}

std::string FormatCursor(const Cursor& cursor) {
    return std::to_string(cursor.time) + "." + std::to_string(cursor.id);
}

}  // namespace Morquil::Gateway
