#pragma once

#include <optional>
#include <string>

#include "gateway/config/device_entry.h"
#include "properties/json/property_json.h"

namespace Morquil::Gateway {

using Json = Properties::Json;

/// {name, label, address, room, tags, enabled}
Json EntryJson(const DeviceEntry& entry);

/// `entry` with the members of `json` in place of its own. `problem` says what is wrong, by name.
std::optional<DeviceEntry> ReadEntry(const Json& json, DeviceEntry entry, std::string& problem);

}  // namespace Morquil::Gateway
