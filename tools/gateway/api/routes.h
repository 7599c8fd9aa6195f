// Which endpoint serves which request, and what it needs.
#pragma once

#include <span>
#include <string_view>

#include "gateway/api/endpoint.h"
#include "gateway/people/roles.h"

namespace Morquil::Gateway {

struct Route {
    std::string_view method;
    std::string_view path;  // "/api/v1/devices/{name}"
    Right right;
    Endpoint endpoint;
    std::string_view summary;
};

std::span<const Route> AllRoutes();

/// The route of a request; null if there is none. `methods` then lists what the path allows, if it is known at all.
const Route* FindRoute(const Request& request, std::string& methods);

}  // namespace Morquil::Gateway
