#include "gateway/api/endpoint.h"

#include <algorithm>

#include "properties/suggestion.h"

namespace Morquil::Gateway {
namespace {

constexpr std::size_t deviceSegment = 3;    // /api/v1/devices/{name}
constexpr std::size_t propertySegment = 5;  // /api/v1/devices/{name}/properties/{property}

Response Unknown(const Request& request, std::string_view thing, const std::string& name, std::string_view nearest) {
    Json members = Json::object();
    std::string detail = "there is no " + std::string(thing) + " '" + name + "'";
    if (!nearest.empty()) {
        detail += "; did you mean '" + std::string(nearest) + "'?";
        members["suggestion"] = nearest;
    }
    return ProblemResponse(request, 404, "unknown-name", std::move(detail), std::move(members));
}

}  // namespace

FleetDevice* FindDevice(const Services& services, const Request& request, const Reply& reply) {
    const std::string& name = request.segments[deviceSegment];
    const auto isVisible = [&](std::string_view device) { return CoversDevice(request.identity.scopes, device); };
    FleetDevice* const device = services.fleet.Find(name);
    if (device != nullptr && isVisible(name)) {
        return device;
    }
    std::vector<std::string_view> names = services.fleet.Names();
    std::erase_if(names, [&](std::string_view other) { return !isVisible(other); });
    reply(Unknown(request, "device", name, Properties::Nearest(name, names)));
    return nullptr;
}

const Property* FindProperty(const Request& request, const Reply& reply) {
    const std::string& name = request.segments[propertySegment];
    const Property* const property = Properties::FindProperty(name);
    if (property == nullptr) {
        reply(Unknown(request, "property", name, Properties::NearestName(name)));
    } else if (!Covers(request.identity.scopes, request.segments[deviceSegment], property->name)) {
        reply(ProblemResponse(request, 403, "forbidden", "your scope does not include " + property->name));
        return nullptr;
    }
    return property;
}

std::optional<Json> ReadBody(const Request& request, const Reply& reply) {
    // Far deeper than any body of the API.
    constexpr int deepest = 32;
    bool isTooDeep = false;
    Json json = Json::parse(
        request.body,
        [&](int depth, Json::parse_event_t, Json&) {
            isTooDeep = isTooDeep || depth > deepest;
            return !isTooDeep;
        },
        false);
    if (json.is_discarded() || isTooDeep) {
        reply(ProblemResponse(request, 400, "malformed-json", "the body is not JSON"));
        return std::nullopt;
    }
    return json;
}

}  // namespace Morquil::Gateway
