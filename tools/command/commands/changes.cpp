#include "command/commands/changes.h"

#include "command/arguments/exit_code.h"

namespace Morquil::Command {
namespace {

const Property& FindWritable(const std::string& name) {
    const Property& property = FindProperty(name);
    if (!property.IsWritable()) {
        throw UsageFailure(property.name + " cannot be set");
    }
    return property;
}

std::optional<std::string> ReasonToRefuse(const Change& change, const morquil::Device& device) {
    if (!Exists(*change.property, device)) {
        return "this device does not have it";
    }
    const auto refusal = CheckOffered(*change.property, Offered(*change.property, device), change.value);
    return refusal ? std::optional(refusal->text) : std::nullopt;
}

}  // namespace

Change ParseChange(const std::string& name, const std::string& value) {
    const Property& property = FindWritable(name);
    Properties::Checked checked = ParseValue(property.type, value);
    if (const auto* const refusal = std::get_if<Properties::Refusal>(&checked)) {
        throw UsageFailure(property.name + ": " + refusal->text);
    }
    return {&property, std::get<Value>(std::move(checked))};
}

std::vector<Change> ParseChanges(const std::vector<std::string>& words) {
    std::vector<Change> changes;
    for (std::size_t at = 0; at < words.size(); ++at) {
        const Property& property = FindWritable(words[at]);
        const bool takesValue = property.type.kind != Kind::Nothing;
        if (takesValue && ++at == words.size()) {
            throw UsageFailure(property.name + ": the value is missing");
        }
        changes.push_back(takesValue ? ParseChange(property.name, words[at]) : Change{&property, Value(std::string())});
    }
    return changes;
}

std::vector<RefusedChange> FindRefused(const std::vector<Change>& changes, const morquil::Device& device) {
    std::vector<RefusedChange> refused;
    bool mayModesChange = false;
    for (const Change& change : changes) {
        const std::optional<std::string> reason = ReasonToRefuse(change, device);
        if (reason && !(mayModesChange && change.property->dependsOnModes)) {
            refused.push_back({change, *reason});
        }
        mayModesChange = mayModesChange || change.property->changesModes;
    }
    return refused;
}

}  // namespace Morquil::Command
