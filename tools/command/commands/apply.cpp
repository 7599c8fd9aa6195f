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

Value ParseFor(const Property& property, const std::string& text) {
    try {
        return ParseValue(property.type, text);
    } catch (const UsageFailure& failure) {
        throw UsageFailure(property.name + ": " + failure.what());
    }
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

void CheckRange(const Change& change, const Link& link) {
    const Offer offer = ReadOffer(*change.property, link.Device());
    const Limits* const limits = std::get_if<Limits>(&offer);
    if (limits != nullptr && (change.value < limits->smallest || limits->largest < change.value)) {
        throw UsageFailure(change.property->name + ": " + FormatValue(change.property->type, change.value) +
                           " is outside " + OfferAsText(*change.property, offer));
    }
}

// Sends the change, and reports what a setter's failure means for it.
void Send(const Change& change, const Link& link) {
    try {
        change.property->write(link.Device(), change.property->number, change.value);
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
    const std::optional<Value> reported = ReadValue(*change.property, link.Device());
    if (!reported) {
        // An empty text has no line of its own.
        return change.value == Value(std::string()) && Clock::now() >= sent + grace;
    }
    return IsSame(change.value, *reported) ||
           (IsSameButForCase(change.value, *reported) && Clock::now() >= sent + grace);
}

[[noreturn]] void ThrowNotApplied(const Change& change, const Link& link) {
    const Property& property = *change.property;
    const std::optional<Value> reported = ReadValue(property, link.Device());
    std::string text = property.name + ": not applied within " + link.Until().Text() + ": the device reports ";
    text += reported ? FormatValue(property.type, *reported) : "no value";
    text += ", not " + FormatValue(property.type, change.value);
    const Offer offer = ReadOffer(property, link.Device());
    if (const auto* const words = std::get_if<std::vector<std::int64_t>>(&offer)) {
        const bool isOffered =
            std::any_of(words->begin(), words->end(), [&](std::int64_t word) { return Value(word) == change.value; });
        text += isOffered ? "" : "; it accepts " + OfferAsText(property, offer);
    }
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
        const std::optional<Value> reported = property.IsReadable() ? ReadValue(property, link.Device()) : change.value;
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
