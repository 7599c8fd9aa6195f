#include "gateway/api/fleet_recorder.h"

#include "gateway/api/response.h"

namespace Morquil::Gateway {
namespace {

Change ToRow(const FleetDevice& device, const ValueChange& change) {
    const auto json = [&](const std::optional<Value>& value) {
        return DumpJson(Properties::ToJson(change.property->type, value));
    };
    return {.time = std::chrono::floor<std::chrono::milliseconds>(change.last.time),
            .device = device.Entry().name,
            .property = change.property->name,
            .oldValue = json(change.oldValue),
            .newValue = json(change.newValue),
            .origin = std::string(NameOf(change.last.origin)),
            .who = change.last.who};
}

}  // namespace

// The first value that the gateway sees is no change. A value that differs after a reconnection is one.
void FleetRecorder::OnChanges(const FleetDevice& device, std::span<const ValueChange> changes) {
    for (const ValueChange& change : changes) {
        if (change.last.origin != Origin::Initial || change.oldValue) {
            store_.Add(ToRow(device, change));
        }
    }
    next_.OnChanges(device, changes);
}

}  // namespace Morquil::Gateway
