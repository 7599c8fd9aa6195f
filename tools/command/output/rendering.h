#pragma once

#include <optional>
#include <string>

#include "command/changes/change_log.h"
#include "command/output/terminal.h"
#include "command/properties/property.h"

namespace Morquil::Command {

/// A value for people; "-" if it has not been reported.
Cell ValueAsCell(const Property& property, const std::optional<Value>& value);
std::string ValueAsText(const Property& property, const std::optional<Value>& value);

/// The same for programs; null if it has not been reported.
Json ValueAsJson(const Property& property, const std::optional<Value>& value);

/// "gain  0 -> 12  (3 values skipped)", with its time.
Row ChangeAsRow(const ValueChange& change);
Json ChangeAsJson(const ValueChange& change);

/// "(3 values skipped)"; empty for none.
Cell SkippedAsCell(std::size_t count, const std::string& noun);

/// Prints one document, indented.
void PrintJson(const Terminal& terminal, const Json& document);
/// Prints one object on a line of its own.
void PrintJsonLine(const Terminal& terminal, const Json& object);

}  // namespace Morquil::Command
