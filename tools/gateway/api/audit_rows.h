// What the audit keeps of a request.
#pragma once

#include <vector>

#include "gateway/api/request.h"
#include "gateway/api/response.h"
#include "gateway/store/records.h"

namespace Morquil::Gateway {

/// A row for each property that a request wanted to set, or one row for a request that wanted to change anything else;
/// none for one that only reads. Passwords are left out.
std::vector<Attempt> AuditRows(const Request& request, const Response& response, Time now);

}  // namespace Morquil::Gateway
