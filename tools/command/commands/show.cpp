// status, get, ranges, list.
#include "command/commands/commands.h"
#include "command/output/rendering.h"
#include "command/output/status.h"
#include "command/properties/property.h"

namespace Morquil::Command {
namespace {

Selection Readable(Selection selection) {
    std::erase_if(selection, [](const Property* property) { return !property->IsReadable(); });
    return selection;
}

void RefuseCommands(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        if (IsExactName(name) && !FindProperty(name).IsReadable()) {
            throw UsageFailure(name + " is a command: it has no value to read");
        }
    }
}

// A property that was requested by its full name must have been reported.
void RefuseUnknown(const std::vector<std::string>& names, const morquil::Device& device) {
    for (const std::string& name : names) {
        if (IsExactName(name) && !Read(FindProperty(name), device)) {
            throw Failure(ExitCode::NotApplied, name + ": the device has not reported the value");
        }
    }
}

// The members of a row in "list --json", in this order. The description file has more.
constexpr const char* listedMembers[] = {"name",   "kind",  "readable", "writable", "summary",   "interface", "getter",
                                         "setter", "range", "min",      "max",      "mostBytes", "words"};

Json AsListed(const Property& property) {
    const Json described = DescribeProperty(property);
    Json row = Json::object();
    for (const char* const member : listedMembers) {
        if (described.contains(member)) {
            row[member] = described.at(member);
        }
    }
    return row;
}

}  // namespace

void ShowStatus(const Context& context) {
    const Link link(context);
    if (context.options.isJson) {
        Json document = {{"address", link.Address()}};
        document.update(StatusAsJson(link.Device()));
        PrintJson(context.terminal, document);
        return;
    }
    std::vector<Row> rows = {{"Address", link.Address()}};
    for (const auto& [title, text] : StatusOf(link.Device())) {
        rows.push_back({title, text});
    }
    PrintTable(context.terminal, rows);
}

void ShowValues(const Context& context) {
    const Selection selection = Readable(SelectProperties(context.options.words));
    RefuseCommands(context.options.words);
    const Link link(context);
    RefuseUnknown(context.options.words, link.Device());
    Json document = Json::object();
    std::vector<Row> rows;
    for (const Property* const property : selection) {
        const std::optional<Value> value = Read(*property, link.Device());
        document[property->name] = ValueAsJson(*property, value);
        const Cell cell = ValueAsCell(*property, value);
        rows.push_back(context.options.isValueOnly ? Row{cell} : Row{property->name, cell});
    }
    context.options.isJson ? PrintJson(context.terminal, document) : PrintTable(context.terminal, rows);
}

void ShowRanges(const Context& context) {
    Selection selection = SelectProperties(context.options.words);
    std::erase_if(selection, [](const Property* property) { return property->offer == nullptr; });
    if (selection.empty()) {
        throw UsageFailure("devices do not report what they accept for " + context.options.words.front() +
                           "; its words are in: morquilctl list --json");
    }
    const Link link(context);
    Json document = Json::object();
    std::vector<Row> rows;
    for (const Property* const property : selection) {
        const Offer offer = Offered(*property, link.Device());
        document[property->name] = ToJson(property->type, offer);
        const std::string text = FormatOffer(*property, offer);
        rows.push_back({property->name, text.empty() ? Cell("-", Style::Faint) : Cell(text)});
    }
    context.options.isJson ? PrintJson(context.terminal, document) : PrintTable(context.terminal, rows);
}

void ShowList(const Context& context) {
    Json document = Json::array();
    std::vector<Row> rows;
    for (const Property* const property : SelectProperties(context.options.words)) {
        document.push_back(AsListed(*property));
        rows.push_back({property->name, std::string(NameOf(property->type.kind)),
                        std::string(NameOf(property->Access())), Cell(std::string(property->summary), Style::Faint)});
    }
    context.options.isJson ? PrintJson(context.terminal, document) : PrintTable(context.terminal, rows);
}

}  // namespace Morquil::Command
