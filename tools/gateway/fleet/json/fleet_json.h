// Devices, their links and values as JSON, in the forms of the API and of the stream.
#pragma once

#include <functional>
#include <span>

#include "gateway/config/entry_json.h"
#include "gateway/fleet/fleet_device.h"

namespace Morquil::Gateway {

/// Which properties are to be shown; an empty function means all.
using PropertyFilter = std::function<bool(Position)>;

/// {state, sentence, since, lastReport, age}
Json LinkJson(const FleetDevice& device);
/// {input, output, signalPresent, referenceLocked, panelLocked, remoteLocked}: null unless the device is connected.
Json SummaryJson(const FleetDevice& device);
/// Whether the summary or the alarms follow from the property.
bool IsInSummary(const Property& property);
/// What an operator has to look at, as sentences.
Json AlarmsJson(const FleetDevice& device);
/// All of the above, the revision, the model and the latest change.
Json DeviceJson(const FleetDevice& device);

/// {value, live, age, offer, access, changed, origin, who}; `last` instead of a value that is no longer live.
Json StateJson(const FleetDevice& device, const Property& property);
/// The states of all readable properties, by name.
Json StatesJson(const FleetDevice& device, const PropertyFilter& filter);

/// The values of all readable properties by name; null while they are not known or not live.
Json ValuesJson(const FleetDevice& device, const PropertyFilter& filter);
/// {NAME: {value, old, origin, who}}
Json ChangesJson(std::span<const ValueChange> changes, const PropertyFilter& filter);

}  // namespace Morquil::Gateway
