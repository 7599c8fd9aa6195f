#include "gateway/api/recording.h"

#include "gateway/api/audit_rows.h"

namespace Morquil::Gateway {
namespace {

void Record(Services& services, Attempt row, std::chrono::duration<double> took) {
    if (!row.property.empty()) {
        services.metrics.CountChange(row.outcome, row.status >= 300);
    }
    if (row.outcome == "confirmed") {
        services.metrics.ObserveConfirm(took.count());
    }
    services.store.Add(std::move(row));
}

}  // namespace

void RecordAttempts(Services& services, const Request& request, const Response& response,
                    std::chrono::duration<double> took) {
    for (Attempt& row : AuditRows(request, response, Now())) {
        Record(services, std::move(row), took);
    }
}

void RecordCommand(Services& services, const Request& request, const Wish& wish, const WishResult& result,
                   std::chrono::duration<double> took) {
    Record(services,
           {.time = Now(),
            .who = request.identity.name,
            .address = request.address,
            .device = wish.device,
            .property = wish.property,
            .value = DumpJson(wish.value),
            .outcome = result.outcome,
            .status = result.status,
            .requestId = request.id},
           took);
}

}  // namespace Morquil::Gateway
