// set, preset.
#include <algorithm>
#include <memory>

#include "command/commands/commands.h"
#include "command/output/rendering.h"
#include "command/properties/property.h"

namespace Morquil::Command {
namespace {

// How long to wait for a command without a value to be sent, and before accepting that a device keeps the old spelling
// of a name.
constexpr std::chrono::milliseconds grace{300};

struct Change {
    const Property* property;
    Value value;
};

[[noreturn]] void Refuse(const Property& property, const Properties::Refusal& refusal) {
    throw UsageFailure(property.name + ": " + refusal.text);
}

Value ParseFor(const Property& property, const std::string& text) {
    Properties::Checked checked = ParseValue(property.type, text);
    if (const auto* const refusal = std::get_if<Properties::Refusal>(&checked)) {
        Refuse(property, *refusal);
    }
    return std::get<Value>(std::move(checked));
}

// Names and values in turn; a property without a value has its name alone.
std::vector<Change> ParseChanges(const std::vector<std::string>& words) {
    std::vector<Change> changes;
    for (std::size_t at = 0; at < words.size(); ++at) {
        const Property& property = FindProperty(words[at]);
        if (!property.IsWritable()) {
            throw UsageFailure(property.name + " cannot be set");
        }
        const bool takesValue = property.type.kind != Kind::Nothing;
        if (takesValue && ++at == words.size()) {
            throw UsageFailure(property.name + ": the value is missing");
        }
        changes.push_back({&property, takesValue ? ParseFor(property, words[at]) : Value(std::string())});
    }
    return changes;
}

// What is outside a range is refused; a word that is not offered is sent, and left to the device.
void CheckRange(const Change& change, const Link& link) {
    const Offer offer = Offered(*change.property, link.Device());
    const auto refusal = CheckOffered(*change.property, offer, change.value);
    if (refusal && std::holds_alternative<Limits>(offer)) {
        Refuse(*change.property, *refusal);
    }
}

// Sends the change, and reports what a setter's failure means for it.
void Send(const Change& change, const Link& link) {
    try {
        Set(*change.property, link.Device(), change.value);
    } catch (const morquil::Error& error) {
        link.CheckIsThere();
        if (error.Result() == E_INVALIDARG) {
            throw UsageFailure(change.property->name + ": the library does not accept " +
                               FormatValue(change.property->type, change.value));
        }
        throw Failure(ExitCode::NotApplied, change.property->name + ": " + error.what());
    }
}

// The library does not report when a command was sent, but a resulting change shows it early.
void SendCommand(const Change& change, const Link& link) {
    const auto isNotified = std::make_shared<std::atomic<bool>>(false);
    const morquil::Subscription subscription =
        link.Device().OnChange(change.property->set, [isNotified](morquil::PropertySet) { *isNotified = true; });
    Send(change, link);
    link.Await(std::min(Clock::now() + grace, link.Until().time), [&] { return isNotified->load(); });
}

bool IsReported(const Change& change, const Link& link, Clock::time_point sent) {
    using Properties::Confirmation;
    const Confirmation confirmation = Properties::Confirms(Read(*change.property, link.Device()), change.value);
    return confirmation == Confirmation::Yes || (confirmation == Confirmation::Likely && Clock::now() >= sent + grace);
}

[[noreturn]] void ThrowNotApplied(const Change& change, const Link& link) {
    const Property& property = *change.property;
    const std::optional<Value> reported = Read(property, link.Device());
    std::string text = property.name + ": not applied within " + link.Until().Text() + ": the device reports ";
    text += reported ? FormatValue(property.type, *reported) : "no value";
    text += ", not " + FormatValue(property.type, change.value);
    const Offer offer = Offered(property, link.Device());
    const bool isList = std::holds_alternative<std::vector<std::int64_t>>(offer);
    text += isList && CheckOffered(property, offer, change.value) ? "; it accepts " + FormatOffer(property, offer) : "";
    throw Failure(ExitCode::NotApplied, text);
}

void SendSetting(const Change& change, const Link& link) {
    const Clock::time_point sent = Clock::now();
    Send(change, link);
    if (!link.Await(link.Until().time, [&] { return IsReported(change, link, sent); })) {
        ThrowNotApplied(change, link);
    }
}

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
    void AddFailure(const Change& change, const Failure& failure) {
        changes_.push_back({{"name", change.property->name},
                            {"value", ValueAsJson(*change.property, change.value)},
                            {"result", "failed"},
                            {"reason", failure.what()}});
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

void Apply(const Change& change, const Link& link) {
    CheckRange(change, link);
    change.property->IsReadable() ? SendSetting(change, link) : SendCommand(change, link);
}

// One after the other: a change of mode changes what else the device accepts.
void ApplyAll(const Context& context, const std::vector<Change>& changes) {
    const Link link(context);
    Report report(context);
    for (const Change& change : changes) {
        try {
            Apply(change, link);
            report.Add(change, link);
        } catch (const Failure& failure) {
            report.AddFailure(change, failure);
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
    ShowValues({shown, context.terminal, context.deadline, context.isInterrupted});
}

}  // namespace Morquil::Command
