// Adding, editing, renaming and removing devices.
#include "gateway/api/endpoint.h"
#include "gateway/fleet/json/fleet_json.h"

namespace Morquil::Gateway {
namespace {

/// Brings the fleet in line with the book, and answers when the book is on the disk.
void Commit(Services& services, const SharedRequest& request, Response response, const Reply& reply) {
    services.fleet.Become(services.book.Entries());
    if (services.bookPath.empty()) {
        reply(std::move(response));
        return;
    }
    services.fleet.Blocking().Run([&context = services.context, path = services.bookPath,
                                   content = services.book.Save(), request, response = std::move(response), reply] {
        const std::string problem = ReplaceFile(path, content);
        boost::asio::post(context, [problem, path, request, response, reply] {
            reply(problem.empty() ? response
                                  : ProblemResponse(*request, 503, "not-saved",
                                                    "the change is in effect, but would be lost at a restart: " + path +
                                                        " cannot be written: " + problem));
        });
    });
}

std::optional<DeviceEntry> ReadEntryOf(const Request& request, const DeviceEntry& base, const Reply& reply) {
    const std::optional<Json> body = ReadBody(request, reply);
    if (!body) {
        return std::nullopt;
    }
    std::string problem;
    std::optional<DeviceEntry> entry = ReadEntry(*body, base, problem);
    if (!entry) {
        reply(ProblemResponse(request, 422, "malformed-value", problem));
    }
    return entry;
}

/// Returns: false after it has answered that the name is taken.
bool IsFree(const Services& services, const Request& request, const std::string& name, const Reply& reply) {
    if (!services.book.Has(name)) {
        return true;
    }
    reply(ProblemResponse(request, 409, "name-taken", "there is a device '" + name + "' already"));
    return false;
}

}  // namespace

void AddDevice(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<DeviceEntry> entry = ReadEntryOf(*request, {}, reply);
    if (!entry || !IsFree(services, *request, entry->name, reply)) {
        return;
    }
    services.book.Put(*entry);
    Response response = JsonResponse(201, EntryJson(*entry));
    response.headers.emplace_back("Location", "/api/v1/devices/" + entry->name);
    Commit(services, request, std::move(response), reply);
}

void EditDevice(Services& services, const SharedRequest& request, const Reply& reply) {
    const FleetDevice* const device = FindDevice(services, *request, reply);
    if (device == nullptr) {
        return;
    }
    const std::string name = device->Entry().name;
    const std::optional<DeviceEntry> entry = ReadEntryOf(*request, device->Entry(), reply);
    if (!entry || (entry->name != name && !IsFree(services, *request, entry->name, reply))) {
        return;
    }
    if (entry->name != name) {
        services.book.Remove(name);
        services.fleet.Rename(name, entry->name);
    }
    services.book.Put(*entry);
    Commit(services, request, JsonResponse(200, EntryJson(*entry)), reply);
}

void RemoveDevice(Services& services, const SharedRequest& request, const Reply& reply) {
    if (const FleetDevice* const device = FindDevice(services, *request, reply)) {
        services.book.Remove(device->Entry().name);
        Commit(services, request, NoContent(), reply);
    }
}

void ReloadConfig(Services& services, const SharedRequest&, const Reply& reply) {
    services.reload();
    reply(NoContent());
}

}  // namespace Morquil::Gateway
