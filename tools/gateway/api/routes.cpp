#include "gateway/api/routes.h"

#include <algorithm>
#include <array>

namespace Morquil::Gateway {
namespace {

// clang-format off
constexpr std::array routes{
    Route{"GET",    "/api/v1/me",         Right::See, &GetMe,         "Who is asking, and what they may do"},
    Route{"GET",    "/api/v1/properties", Right::See, &GetProperties, "All properties that devices have"},

    Route{"GET",    "/api/v1/devices",        Right::See,       &GetDevices,   "All devices"},
    Route{"POST",   "/api/v1/devices",        Right::EditFleet, &AddDevice,    "Adds a device"},
    Route{"GET",    "/api/v1/devices/{name}", Right::See,       &GetDevice,    "A device with all its values"},
    Route{"PATCH",  "/api/v1/devices/{name}", Right::EditFleet, &EditDevice,   "Edits or renames a device"},
    Route{"DELETE", "/api/v1/devices/{name}", Right::EditFleet, &RemoveDevice, "Removes a device"},
    Route{"POST",   "/api/v1/probe",          Right::EditFleet, &ProbeAddress, "Tries an address before it is saved"},

    Route{"GET",    "/api/v1/devices/{name}/properties",            Right::See,         &GetDeviceProperties, "The values of a device"},
    Route{"PATCH",  "/api/v1/devices/{name}/properties",            Right::SetProperty, &SetDeviceProperties, "Sets several values"},
    Route{"GET",    "/api/v1/devices/{name}/properties/{property}", Right::See,         &GetDeviceProperty,   "A value, and what may be set now"},
    Route{"PUT",    "/api/v1/devices/{name}/properties/{property}", Right::SetProperty, &SetDeviceProperty,   "Sets a value"},
};
// clang-format on

bool Matches(std::string_view pattern, const std::vector<std::string>& segments) {
    std::size_t at = 0;
    while (!pattern.empty()) {
        pattern.remove_prefix(1);
        const std::size_t end = std::min(pattern.find('/'), pattern.size());
        const std::string_view part = pattern.substr(0, end);
        if (at == segments.size() || (!part.starts_with('{') && part != segments[at])) {
            return false;
        }
        ++at;
        pattern.remove_prefix(end);
    }
    return at == segments.size();
}

}  // namespace

std::span<const Route> AllRoutes() {
    return routes;
}

const Route* FindRoute(const Request& request, std::string& methods) {
    for (const Route& route : routes) {
        if (Matches(route.path, request.segments)) {
            if (route.method == request.method) {
                return &route;
            }
            methods += (methods.empty() ? "" : ", ") + std::string(route.method);
        }
    }
    return nullptr;
}

}  // namespace Morquil::Gateway
