#pragma once

#include <optional>
#include <string>

#include "command/changes/change_log.h"
#include "command/output/terminal.h"
#include "command/properties/property.h"

namespace Morquil::Command {

/// A value that may not have been reported, for people: "-" then.
Cell ValueAsCell(const Property& property, const std::optional<Value>& value);
std::string ValueAsText(const Property& property, const std::optional<Value>& value);

/// The same for programs: null then.
Json ValueAsJson(const Property& property, const std::optional<Value>& value);

/// "-60 to 60", or the words; empty when the device has not told.
std::string OfferAsText(const Property& property, const Offer& offer);

/// "gain  0 -> 12  (3 values skipped)", with its time.
Row ChangeAsRow(const ValueChange& change);
Json ChangeAsJson(const ValueChange& change);

/// "(3 values skipped)"; empty for none.
Cell SkippedAsCell(std::size_t count, const std::string& noun);

/// One document, indented.
void PrintJson(const Terminal& terminal, const Json& document);
/// One object on a line of its own.
void PrintJsonLine(const Terminal& terminal, const Json& object);

}  // namespace Morquil::Command
