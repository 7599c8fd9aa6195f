// set, preset.
#include <algorithm>

#include "command/commands/changes.h"
#include "command/commands/commands.h"
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

// "; it accepts 1080i50, 1080p25", for a word that the device does not accept now.
std::string AcceptedWords(const Change& change, const Link& link) {
    const Offer offer = Offered(*change.property, link.Device());
    const bool isList = std::holds_alternative<std::vector<std::int64_t>>(offer);
    return isList && CheckOffered(*change.property, offer, change.value)
               ? "; it accepts " + FormatOffer(*change.property, offer)
               : "";
}

std::string ReportedText(const Change& change, const Link& link) {
    const std::optional<Value> reported = Read(*change.property, link.Device());
    return "the device reports " + (reported ? FormatValue(change.property->type, *reported) : "no value");
}

[[noreturn]] void ThrowNotApplied(const Change& change, const std::string& reason) {
    throw Failure(ExitCode::NotApplied, change.property->name + ": " + reason);
}

[[noreturn]] void ThrowRefused(const Change& change, const Link& link) {
    if (!change.property->IsReadable()) {
        ThrowNotApplied(change, "the device has refused it");
    }
    ThrowNotApplied(change, "the device has refused " + FormatValue(change.property->type, change.value) + ": " +
                                ReportedText(change, link) + AcceptedWords(change, link));
}

[[noreturn]] void ThrowTimedOut(const Change& change, const Link& link) {
    const std::string within = " within " + link.Until().Text();
    if (!change.property->IsReadable()) {
        throw Failure(ExitCode::TimedOut, change.property->name + ": the device has not acknowledged it" + within);
    }
    ThrowNotApplied(change, "not applied" + within + ": " + ReportedText(change, link) + ", not " +
                                FormatValue(change.property->type, change.value) + AcceptedWords(change, link));
}

bool IsReported(const Change& change, const Link& link) {
    return !change.property->IsReadable() ||
           Properties::Confirms(Read(*change.property, link.Device()), change.value) != Properties::Confirmation::No;
}

// Throws: what the outcome means for the exit code.
void ExpectApplied(const Change& change, const morquil::Outcome& outcome, const Link& link) {
    switch (outcome.result) {
        case morquil::Result::Refused:
            ThrowRefused(change, link);
        case morquil::Result::NotSent:
            ThrowNotApplied(change, "the library never sends it");
        case morquil::Result::TimedOut:
            ThrowTimedOut(change, link);
        default:
            break;
    }
    if (!IsReported(change, link)) {
        ThrowNotApplied(change, "not applied: " + ReportedText(change, link) + ", not " +
                                    FormatValue(change.property->type, change.value) + AcceptedWords(change, link));
    }
}

// `isFirst`: nothing has been sent before.
void Apply(const Change& change, const Link& link, bool isFirst) {
    try {
        ExpectApplied(change, link.Apply([&] { Set(*change.property, link.Device(), change.value); }), link);
    } catch (const morquil::Error& error) {
        link.CheckIsThere();
        const bool isMisuse = isFirst && error.Result() == E_INVALIDARG;
        throw Failure(isMisuse ? ExitCode::Usage : ExitCode::NotApplied,
                      change.property->name + ": the library does not accept " +
                          FormatValue(change.property->type, change.value) + ": " + error.what());
    }
}

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
void ApplyAll(const Context& context, const std::vector<Change>& changes) {
    const Link link(context);
    Report report(context);
    ExpectAccepted(changes, link, report);
    for (const Change& change : changes) {
        try {
            Apply(change, link, &change == &changes.front());
            report.Add(change, link);
        } catch (const Failure& failure) {
            report.AddFailure(change, failure.what());
            report.Print();
            throw;
        }
    }
    report.Print();
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

void RecallPreset(const Context& context) {
    ApplyAll(context, ParseChanges({"preset.recall", context.options.words.front()}));
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
    ShowValues({shown, context.terminal, context.deadline, context.isInterrupted, context.prepareLibrary});
}

}  // namespace Morquil::Command
