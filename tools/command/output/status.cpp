#include "command/output/status.h"

#include <algorithm>
#include <array>
#include <optional>

#include "command/output/rendering.h"
#include "command/properties/property.h"

namespace Morquil::Command {
namespace {

struct StatusLine {
    const char* title;
    std::array<const char*, 6> names;  // the properties whose values are shown side by side
};

// clang-format off
constexpr StatusLine statusLines[] = {
    {"Device",    {"device.name", "network.name"}},
    {"Versions",  {"device.software-version", "device.fpga-version"}},
    {"Locks",     {"device.panel-lock", "device.remote-lock"}},
    {"Input",     {"input.video-source", "input.video-mode", "input.pixel-format", "input.audio-source", "input.signal-present"}},
    {"Output",    {"output.video-mode", "output.pixel-format", "output.aspect-ratio", "output.option"}},
    {"Reference", {"reference.type", "reference.signal-locked"}}};
// clang-format on

// "signal-present" of "input.signal-present", as words.
std::string LeafOf(const std::string& name) {
    std::string leaf = name.substr(name.find('.') + 1);
    std::replace(leaf.begin(), leaf.end(), '-', ' ');
    return leaf;
}

// A yes or no means nothing without its name.
std::string StatusText(const Property& property, const std::optional<Value>& value) {
    if (!value) {
        return {};
    }
    if (const bool* const truth = std::get_if<bool>(&*value)) {
        return LeafOf(property.name) + ": " + (*truth ? "yes" : "no");
    }
    const std::string text = FormatValue(property.type, *value);
    return property.type.kind == Kind::Bits ? LeafOf(property.name) + ": " + text : text;
}

Selection PropertiesOf(const StatusLine& line) {
    Selection properties;
    for (const char* const name : line.names) {
        if (name != nullptr) {
            properties.push_back(&FindProperty(name));
        }
    }
    return properties;
}

}  // namespace

std::vector<std::pair<std::string, std::string>> StatusOf(const morquil::Device& device) {
    std::vector<std::pair<std::string, std::string>> lines;
    for (const StatusLine& line : statusLines) {
        std::string joined;
        for (const Property* const property : PropertiesOf(line)) {
            const std::string text = StatusText(*property, Read(*property, device));
            joined += (joined.empty() || text.empty() ? "" : ", ") + text;
        }
        lines.emplace_back(line.title, std::move(joined));
    }
    return lines;
}

Json StatusAsJson(const morquil::Device& device) {
    Json document = Json::object();
    for (const StatusLine& line : statusLines) {
        for (const Property* const property : PropertiesOf(line)) {
            document[property->name] = ValueAsJson(*property, Read(*property, device));
        }
    }
    return document;
}

}  // namespace Morquil::Command
