#include "gateway/config/entry_json.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

bool ReadText(const Json& json, std::string& target) {
    if (json.is_string()) {
        target = json.get<std::string>();
    }
    return json.is_string();
}

bool ReadBool(const Json& json, bool& target) {
    if (json.is_boolean()) {
        target = json.get<bool>();
    }
    return json.is_boolean();
}

bool ReadTags(const Json& json, std::vector<std::string>& target) {
    if (!json.is_array()) {
        return false;
    }
    target.clear();
    return std::all_of(json.begin(), json.end(), [&](const Json& tag) { return ReadText(tag, target.emplace_back()); });
}

/// Returns: what was expected; empty if the member is well.
std::string_view ReadMember(const std::string& key, const Json& value, DeviceEntry& entry) {
    if (key == "name") {
        return ReadText(value, entry.name) ? "" : "a text";
    }
    if (key == "label") {
        return ReadText(value, entry.label) ? "" : "a text";
    }
    if (key == "address") {
        return ReadText(value, entry.address) ? "" : "a text";
    }
    if (key == "room") {
        return ReadText(value, entry.room) ? "" : "a text";
    }
    if (key == "tags") {
        return ReadTags(value, entry.tags) ? "" : "a list of texts";
    }
    if (key == "enabled") {
        return ReadBool(value, entry.enabled) ? "" : "true or false";
    }
    return "name, label, address, room, tags or enabled";
}

}  // namespace

Json EntryJson(const DeviceEntry& entry) {
    return {{"name", entry.name}, {"label", entry.label}, {"address", entry.address},
            {"room", entry.room}, {"tags", entry.tags},   {"enabled", entry.enabled}};
}

std::optional<DeviceEntry> ReadEntry(const Json& json, DeviceEntry entry, std::string& problem) {
    if (!json.is_object()) {
        problem = "expected an object with the members of a device";
        return std::nullopt;
    }
    for (const auto& [key, value] : json.items()) {
        const std::string_view expected = ReadMember(key, value, entry);
        if (!expected.empty()) {
            problem = key + ": expected " + std::string(expected);
            return std::nullopt;
        }
    }
    if (const std::optional<std::string> fault = FaultOf(entry)) {
        problem = *fault;
        return std::nullopt;
    }
    return entry;
}

}  // namespace Morquil::Gateway
