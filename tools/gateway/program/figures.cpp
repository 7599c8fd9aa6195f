#include "gateway/program/figures.h"

namespace Morquil::Gateway {

void UpdateMetrics(Metrics& metrics, const Fleet& fleet, const Hub& hub, const StoreCondition& database) {
    for (const auto& [name, device] : fleet.All()) {
        const auto& report = device->LastReport();
        metrics.SetLink(name, device->IsLive(), report ? SecondsSince(*report) : -1, device->Connection().Reconnects());
    }
    metrics.ForgetOthers();
    metrics.SetStreams({.clients = hub.Clients(),
                        .queuedBytes = hub.QueuedBytes(),
                        .longestQueue = hub.LongestQueue(),
                        .gaps = hub.Gaps()});
    metrics.SetDatabase({.bytes = database.bytes,
                         .pending = database.pending,
                         .lost = database.lostChanges + database.lostAttempts,
                         .isWriting = database.state == StoreState::Writing});
}

}  // namespace Morquil::Gateway
