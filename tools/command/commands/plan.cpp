#include "command/commands/plan.h"

namespace Morquil::Command {

Row PlannedAsRow(const Change& change, const morquil::Device& device) {
    const Property& property = *change.property;
    return {property.name, property.IsReadable() ? ValueAsText(property, Read(property, device)) + " -> " +
                                                       ValueAsText(property, change.value)
                                                 : Cell("would be sent")};
}

Json PlannedAsJson(const Change& change, const morquil::Device& device) {
    return {{"name", change.property->name},
            {"old", ValueAsJson(*change.property, Read(*change.property, device))},
            {"new", ValueAsJson(*change.property, change.value)}};
}

void PrintPlan(const Context& context, const std::vector<Change>& changes, const Link& link) {
    std::vector<Row> rows;
    Json planned = Json::array();
    for (const Change& change : changes) {
        rows.push_back(PlannedAsRow(change, link.Device()));
        planned.push_back(PlannedAsJson(change, link.Device()));
    }
    if (context.options.isJson) {
        PrintJson(context.terminal, {{"address", context.options.address}, {"planned", planned}});
    } else {
        PrintTable(context.terminal, rows);
    }
}

}  // namespace Morquil::Command
