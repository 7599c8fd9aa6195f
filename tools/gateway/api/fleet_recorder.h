// Writes what happens in the fleet to the history, and passes it on.
#pragma once

#include "gateway/fleet/fleet_device.h"
#include "gateway/store/store.h"

namespace Morquil::Gateway {

/// Threads: the context's.
class FleetRecorder final : public FleetListener {
public:
    /// Both outlive this.
    FleetRecorder(Store& store, FleetListener& next) : store_(store), next_(next) {}

    void OnChanges(const FleetDevice& device, std::span<const ValueChange> changes) override;
    void OnLink(const FleetDevice& device) override { next_.OnLink(device); }
    void OnOffers(const FleetDevice& device, std::span<const Property* const> properties) override {
        next_.OnOffers(device, properties);
    }
    void OnEdited() override { next_.OnEdited(); }

private:
    Store& store_;
    FleetListener& next_;
};

}  // namespace Morquil::Gateway
