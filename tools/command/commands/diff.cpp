// diff.
#include "command/commands/commands.h"
#include "command/commands/settings_files.h"
#include "command/commands/settings_text.h"
#include "command/commands/values_file.h"
#include "command/output/rendering.h"

namespace Morquil::Command {
namespace {

/// The differences between a device and something else.
class Differences {
public:
    explicit Differences(const Context& context) : context_(context) {}

    void Add(const Property& property, const std::optional<Value>& device, const std::optional<Value>& other) {
        Add(property.name, ValueAsText(property, device), ValueAsText(property, other));
        document_.push_back({{"name", property.name},
                             {"device", ValueAsJson(property, device)},
                             {"other", ValueAsJson(property, other)}});
    }
    void Add(const SettingsLine& line, const SettingsLine* device) {
        Add(line.block + ": " + line.key, device != nullptr ? device->value : "-", line.value);
        document_.push_back({{"name", line.block + ": " + line.key},
                             {"device", device != nullptr ? Json(device->value) : Json()},
                             {"other", line.value}});
    }

    /// Throws: Failure with NotApplied if there are any.
    void Print() const {
        context_.options.isJson ? PrintJson(context_.terminal, {{"differences", document_}})
                                : PrintTable(context_.terminal, rows_);
        if (!rows_.empty()) {
            throw Failure(ExitCode::NotApplied,
                          std::to_string(rows_.size()) + (rows_.size() == 1 ? " difference" : " differences"));
        }
    }

private:
    void Add(const std::string& name, const std::string& device, const std::string& other) {
        rows_.push_back({name, device, other});
    }

    const Context& context_;
    std::vector<Row> rows_;
    Json document_ = Json::array();
};

bool IsJson(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string::npos && text[first] == '{';
}

void CompareWithValues(const std::vector<Change>& values, const Link& link, Differences& differences) {
    for (const Change& wanted : values) {
        const std::optional<Value> value = Read(*wanted.property, link.Device());
        if (Properties::Confirms(value, wanted.value) == Properties::Confirmation::No) {
            differences.Add(*wanted.property, value, wanted.value);
        }
    }
}

void CompareWithFile(const Context& context) {
    const std::string& file = context.options.words.front();
    const std::string text = ReadValuesFile(file);
    const bool isJson = IsJson(text);
    const std::vector<Change> values = isJson ? ParseValuesFile(text, file) : std::vector<Change>();
    const std::vector<SettingsLine> lines = isJson ? std::vector<SettingsLine>() : ParseSettings(text);
    if (values.empty() && lines.empty()) {
        throw UsageFailure(file + ": holds no settings");
    }
    const Link link(context);
    Differences differences(context);
    CompareWithValues(values, link, differences);
    const std::vector<SettingsLine> saved = isJson ? lines : ParseSettings(PresentSettings(link));
    for (const SettingsLine& line : MissingLines(lines, saved)) {
        differences.Add(line, FindLine(saved, line));
    }
    differences.Print();
}

void CompareDevices(const Context& context) {
    Options others = context.options;
    others.address = context.addresses.back();
    const Link link(context);
    const Link other(context.With(others));
    Differences differences(context);
    for (const Property& property : AllProperties()) {
        const bool isCompared = property.IsReadable() && property.IsWritable() && !IsIdentity(property);
        const std::optional<Value> left = isCompared ? Read(property, link.Device()) : std::nullopt;
        const std::optional<Value> right = isCompared ? Read(property, other.Device()) : std::nullopt;
        if (left != right) {
            differences.Add(property, left, right);
        }
    }
    differences.Print();
}

}  // namespace

void ShowDifferences(const Context& context) {
    if (!context.options.words.empty()) {
        CompareWithFile(context);
    } else if (context.addresses.size() == 2) {
        CompareDevices(context);
    } else {
        throw UsageFailure("diff: expected a file, or two devices");
    }
}

}  // namespace Morquil::Command
