// Rows as CSV and as JSON lines.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "gateway/store/queries.h"

namespace Morquil::Gateway {

/// The names of the columns as a line of CSV.
std::string CsvHeader(const Change*);
std::string CsvHeader(const Attempt*);

std::string ToCsv(const Change& change);
std::string ToCsv(const Attempt& attempt);

/// One object, in one line.
std::string ToJsonLine(const Change& change);
std::string ToJsonLine(const Attempt& attempt);

/// A field of CSV: in quotes where it must be, and with an apostrophe in front where a spreadsheet would take it for a
/// formula. Numbers are left alone.
std::string CsvField(std::string_view text);

/// A text in the quotes and escapes of JSON. Bytes that are not UTF-8 become U+FFFD.
std::string JsonText(std::string_view text);

}  // namespace Morquil::Gateway
