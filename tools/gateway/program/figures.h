// The figures of the moment.
#pragma once

#include "gateway/fleet/fleet.h"
#include "gateway/metrics/metrics.h"
#include "gateway/store/store.h"
#include "gateway/stream/hub.h"

namespace Morquil::Gateway {

void UpdateMetrics(Metrics& metrics, const Fleet& fleet, const Hub& hub, const StoreCondition& database);

}  // namespace Morquil::Gateway
