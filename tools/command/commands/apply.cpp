// set, preset.
#include <algorithm>
#include <chrono>
#include <optional>

#include "command/commands/changes.h"
#include "command/commands/commands.h"
#include "command/commands/plan.h"
#include "command/commands/send.h"
#include "command/output/rendering.h"

namespace Morquil::Command {
namespace {

/// The outcome of the changes so far.
class Report {
public:
    explicit Report(const Context& context) : context_(context) {}

    void Add(const Change& change, const Link& link) {
        const Property& property = *change.property;
        const std::optional<Value> reported = property.IsReadable() ? Read(property, link.Device()) : change.value;
        rows_.push_back({property.name, property.IsReadable() ? ValueAsCell(property, reported) : Cell("sent")});
        changes_.push_back({{"name", property.name},
                            {"value", ValueAsJson(property, reported)},
                            {"result", property.IsReadable() ? "applied" : "sent"}});
    }
    void AddFailure(const Change& change, const std::string& reason) {
        changes_.push_back({{"name", change.property->name},
                            {"value", ValueAsJson(*change.property, change.value)},
                            {"result", "failed"},
                            {"reason", reason}});
    }
    void Print() const {
        if (context_.options.isJson) {
            PrintJson(context_.terminal, {{"address", context_.options.address}, {"changes", changes_}});
        } else {
            PrintTable(context_.terminal, rows_);
        }
    }

private:
    const Context& context_;
    std::vector<Row> rows_;
    Json changes_ = Json::array();
};

// Nothing is sent unless everything can be.
void ExpectAccepted(const std::vector<Change>& changes, const Link& link, Report& report) {
    const std::vector<RefusedChange> refused = FindRefused(changes, link.Device());
    if (refused.empty()) {
        return;
    }
    std::string text;
    for (const auto& [change, reason] : refused) {
        report.AddFailure(change, reason);
        text += (text.empty() ? "" : "; ") + change.property->name + ": " + reason;
    }
    report.Print();
    throw UsageFailure(text);
}

// One after the other: a change of mode changes what else the device accepts.
void ApplyAll(const Context& context, const std::vector<Change>& changes, const Link& link) {
    Report report(context);
    ExpectAccepted(changes, link, report);
    if (context.options.isDryRun) {
        PrintPlan(context, changes, link);
        return;
    }
    for (const Change& change : changes) {
        try {
            SendChange(change, link, &change == &changes.front());
            report.Add(change, link);
        } catch (const Failure& failure) {
            report.AddFailure(change, failure.what());
            report.Print();
            throw;
        }
    }
    report.Print();
}

void ApplyAll(const Context& context, const std::vector<Change>& changes) {
    const Link link(context);
    ApplyAll(context, changes, link);
}

std::vector<std::optional<Value>> AllValues(const morquil::Device& device) {
    std::vector<std::optional<Value>> values;
    for (const Property& property : AllProperties()) {
        values.push_back(Read(property, device));
    }
    return values;
}

std::string NameOfPreset(const std::string& number) {
    return "preset.name." + number;
}

// Preset numbers are small; the device's own range is checked later.
const Property& FindPresetName(const std::string& number) {
    const std::string name = NameOfPreset(number);
    if (!IsExactName(name)) {
        const Selection names = SelectProperties({NameOfPreset("*")});
        throw UsageFailure("preset: '" + number + "' is not a preset with a name; expected 1 to " +
                           std::to_string(names.size()));
    }
    return FindProperty(name);
}

}  // namespace

void SetValues(const Context& context) {
    ApplyAll(context, ParseChanges(context.options.words));
}

void SavePreset(const Context& context) {
    ApplyAll(context, ParseChanges({"preset.save", context.options.words.front()}));
}

// Devices do not report which presets are saved. What can be known is whether the recall has changed anything.
void RecallPreset(const Context& context) {
    constexpr std::chrono::seconds longestReport{1};
    const std::string& number = context.options.words.front();
    const std::vector<Change> changes = ParseChanges({"preset.recall", number});
    const Link link(context);
    const std::vector<std::optional<Value>> before = AllValues(link.Device());
    ApplyAll(context, changes, link);
    const auto isChanged = [&] { return AllValues(link.Device()) != before; };
    if (!link.Await(std::min(link.Until().time, Clock::now() + longestReport), isChanged)) {
        PrintMessage(context.terminal, "preset " + number +
                                           ": no setting has changed: it holds the settings that the device already "
                                           "had, or was never saved; devices do not report which");
    }
}

void NamePreset(const Context& context) {
    const std::vector<std::string>& words = context.options.words;
    const std::string name = FindPresetName(words.front()).name;
    if (words.size() > 1) {
        ApplyAll(context, ParseChanges({name, words[1]}));
        return;
    }
    Options shown = context.options;
    shown.words = {name};
    ShowValues(context.With(shown));
}

}  // namespace Morquil::Command
