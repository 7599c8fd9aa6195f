#include "command/commands/values_file.h"

#include <algorithm>
#include <array>

#include "command/arguments/exit_code.h"
#include "command/files/local_file.h"

namespace Morquil::Command {
namespace {

constexpr std::size_t mostBytes = std::size_t{1} << 20;

Change ParseMember(const std::string& name, const Json& value, const std::string& file) {
    const Property& property = FindProperty(name);
    if (!property.IsReadable()) {
        throw UsageFailure(file + ": " + property.name + " is a command: it has no value");
    }
    if (value.is_structured()) {
        throw UsageFailure(file + ": " + property.name + ": expected a number, a word or a text");
    }
    Properties::Checked checked = ParseValue(property.type, Properties::TextOf(value));
    if (const auto* const refusal = std::get_if<Properties::Refusal>(&checked)) {
        throw UsageFailure(file + ": " + property.name + ": " + refusal->text);
    }
    return {&property, std::get<Value>(std::move(checked))};
}

}  // namespace

std::vector<Change> ParseValuesFile(std::string_view text, const std::string& file) {
    const Json document = Json::parse(text, nullptr, false);
    if (!document.is_object()) {
        throw UsageFailure(file + ": is not a JSON object of properties and their values");
    }
    std::vector<Change> values;
    for (const auto& [name, value] : document.items()) {
        if (!value.is_null()) {
            values.push_back(ParseMember(name, value, file));
        }
    }
    // All rows are in one array.
    std::stable_sort(values.begin(), values.end(),
                     [](const Change& left, const Change& right) { return left.property < right.property; });
    return values;
}

bool IsIdentity(const Property& property) {
    constexpr std::array<std::string_view, 4> beginnings = {"network.", "files.", "preset.", "device."};
    return property.name != "device.panel-lock" &&
           std::any_of(beginnings.begin(), beginnings.end(),
                       [&property](std::string_view beginning) { return property.name.starts_with(beginning); });
}

std::string ReadValuesFile(const std::string& file) {
    return ReadLocalFile(file, mostBytes);
}

}  // namespace Morquil::Command
