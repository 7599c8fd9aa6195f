// Devices: what they are and how they are.
#include "gateway/api/endpoint.h"
#include "gateway/fleet/json/fleet_json.h"
#include "gateway/fleet/probe.h"

namespace Morquil::Gateway {
namespace {

PropertyFilter FilterFor(const Request& request, const std::string& device) {
    return [&request, device](Position position) {
        return Covers(request.identity.scopes, device, PropertyAt(position).name);
    };
}

std::string TagOf(const FleetDevice& device) {
    return "\"" + std::to_string(device.Revision()) + "\"";
}

void ReplyWithTag(const Request& request, const FleetDevice& device, Response response, const Reply& reply) {
    const std::string tag = TagOf(device);
    if (request.Header("if-none-match") == tag) {
        response = NoContent();
        response.status = 304;
    }
    response.headers.emplace_back("ETag", tag);
    reply(std::move(response));
}

}  // namespace

void GetMe(Services&, const SharedRequest& request, const Reply& reply) {
    const Identity& identity = request->identity;
    Json scopes = Json::array();
    for (const Scope& scope : identity.scopes) {
        scopes.push_back({{"devices", scope.devices}, {"properties", scope.properties}});
    }
    const std::string_view authentication = identity.kind == Identity::Kind::Open       ? "open"
                                            : identity.kind == Identity::Kind::Password ? "password"
                                                                                        : "token";
    reply(JsonResponse(200, {{"user", identity.name.empty() ? Json() : Json(identity.name)},
                             {"role", NameOf(identity.role)},
                             {"scopes", scopes},
                             {"authentication", authentication}}));
}

void GetProperties(Services&, const SharedRequest&, const Reply& reply) {
    static const std::string description = DumpJson(Properties::DescribeProperties());
    Response response;
    response.permanent = description;
    response.headers.emplace_back("Cache-Control", "max-age=300");
    reply(std::move(response));
}

void GetDevices(Services& services, const SharedRequest& request, const Reply& reply) {
    Json devices = Json::array();
    for (const auto& [name, device] : services.fleet.All()) {
        if (CoversDevice(request->identity.scopes, name)) {
            devices.push_back(DeviceJson(*device));
        }
    }
    reply(JsonResponse(200, {{"revision", services.fleet.Revision()}, {"devices", devices}}));
}

void GetDevice(Services& services, const SharedRequest& request, const Reply& reply) {
    if (const FleetDevice* const device = FindDevice(services, *request, reply)) {
        Json json = DeviceJson(*device);
        json["properties"] = StatesJson(*device, FilterFor(*request, device->Entry().name));
        ReplyWithTag(*request, *device, JsonResponse(200, json), reply);
    }
}

void GetDeviceProperties(Services& services, const SharedRequest& request, const Reply& reply) {
    if (const FleetDevice* const device = FindDevice(services, *request, reply)) {
        const Json states = StatesJson(*device, FilterFor(*request, device->Entry().name));
        ReplyWithTag(*request, *device, JsonResponse(200, states), reply);
    }
}

void GetDeviceProperty(Services& services, const SharedRequest& request, const Reply& reply) {
    const FleetDevice* const device = FindDevice(services, *request, reply);
    const Property* const property = device != nullptr ? FindProperty(*request, reply) : nullptr;
    if (property != nullptr) {
        Json json = {{"property", property->name}};
        json.update(StateJson(*device, *property));
        ReplyWithTag(*request, *device, JsonResponse(200, json), reply);
    }
}

void ProbeAddress(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<Json> body = ReadBody(*request, reply);
    if (!body) {
        return;
    }
    DeviceEntry entry;
    entry.name = "probe";
    entry.address =
        body->is_object()
            ? body->value("address", Json()).is_string() ? (*body)["address"].get<std::string>() : std::string()
            : std::string();
    if (const std::optional<std::string> fault = FaultOf(entry)) {
        reply(ProblemResponse(*request, 422, "malformed-value", *fault));
        return;
    }
    Probe::Start(services.context, entry.address, [reply](const Diagnosis& diagnosis) {
        reply(JsonResponse(200, {{"state", NameOf(diagnosis.state)}, {"sentence", diagnosis.sentence}}));
    });
}

}  // namespace Morquil::Gateway
