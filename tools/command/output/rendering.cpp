#include "command/output/rendering.h"

namespace Morquil::Command {
namespace {

// ASCII only, so that no text of a device can steer a terminal.
std::string AsText(const Json& json, int indent) {
    return json.dump(indent, ' ', true, Json::error_handler_t::replace) + '\n';
}

}  // namespace

std::string ValueAsText(const Property& property, const std::optional<Value>& value) {
    return value ? Properties::FormatValue(property.type, *value) : "-";
}

Cell ValueAsCell(const Property& property, const std::optional<Value>& value) {
    return {ValueAsText(property, value), value ? Style::Plain : Style::Faint};
}

Json ValueAsJson(const Property& property, const std::optional<Value>& value) {
    return Properties::ToJson(property.type, value);
}

Row ChangeAsRow(const ValueChange& change) {
    const Property& property = *change.property;
    return {Cell(LocalTime(change.time), Style::Faint), property.name,
            ValueAsText(property, change.before) + " -> " + ValueAsText(property, change.now),
            SkippedAsCell(change.skipped, "value")};
}

Json ChangeAsJson(const ValueChange& change) {
    const Property& property = *change.property;
    return {{"time", LocalTime(change.time)},
            {"name", property.name},
            {"old", ValueAsJson(property, change.before)},
            {"new", ValueAsJson(property, change.now)},
            {"skipped", change.skipped}};
}

Cell SkippedAsCell(std::size_t count, const std::string& noun) {
    const std::string nouns = count == 1 ? noun : noun + "s";
    return {count == 0 ? std::string() : "(" + std::to_string(count) + " " + nouns + " skipped)", Style::Faint};
}

void PrintJson(const Terminal& terminal, const Json& document) {
    if (terminal.collected != nullptr) {
        terminal.collected->documents.push_back(AsText(document, -1));
        return;
    }
    terminal.out(AsText(document, 2));
}

void PrintJsonLine(const Terminal& terminal, const Json& object) {
    terminal.out(AsText(object, -1));
}

}  // namespace Morquil::Command
