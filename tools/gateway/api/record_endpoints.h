// The history and the audit.
#pragma once

#include "gateway/api/endpoint.h"

namespace Morquil::Gateway {

void GetHistory(Services& services, const SharedRequest& request, const Reply& reply);
void GetAudit(Services& services, const SharedRequest& request, const Reply& reply);

}  // namespace Morquil::Gateway
