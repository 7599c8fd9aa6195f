// Setting values: one, or several of one device.
#include <algorithm>
#include <charconv>
#include <map>

#include "gateway/api/endpoint.h"
#include "gateway/api/setting.h"

namespace Morquil::Gateway {
namespace {

constexpr std::chrono::milliseconds longestDeadline = std::chrono::seconds(60);

/// "5s", "500ms".
std::optional<std::chrono::milliseconds> ReadDuration(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const std::string_view unit = text.substr(static_cast<std::size_t>(end - text.data()));
    if (error != std::errc() || number < 0 || number > longestDeadline.count() || (unit != "s" && unit != "ms")) {
        return std::nullopt;
    }
    const std::chrono::milliseconds duration(unit == "s" ? number * 1'000 : number);
    return duration <= longestDeadline ? std::optional(duration) : std::nullopt;
}

/// Returns: nothing after it has answered what is wrong with them.
std::optional<WishTerms> ReadTerms(const Request& request, const Reply& reply) {
    const std::string_view wait = request.Query("wait").value_or("confirmed");
    const auto deadline = ReadDuration(request.Query("deadline").value_or("5s"));
    if ((wait != "confirmed" && wait != "queued") || !deadline) {
        reply(ProblemResponse(request, 400, "malformed-query",
                              "wait is confirmed or queued, and deadline up to 60s, such as 5s or 500ms"));
        return std::nullopt;
    }
    return WishTerms{wait == "confirmed", *deadline};
}

/// Returns: false after it has answered that the device has changed.
bool MatchesRevision(const Request& request, const FleetDevice& device, const Reply& reply) {
    const std::string_view condition = request.Header("if-match");
    if (condition.empty() || condition == "*" || condition == "\"" + std::to_string(device.Revision()) + "\"") {
        return true;
    }
    reply(ProblemResponse(request, 412, "changed",
                          device.Entry().name + " has changed since; read it again, then decide",
                          {{"revision", device.Revision()}}));
    return false;
}

Response ResponseTo(const Request& request, const WishResult& result) {
    if (!result.IsGood()) {
        Json members = {{"outcome", result.outcome}};
        members.update(result.members);
        Response response = ProblemResponse(request, result.status, result.outcome, result.sentence, members);
        if (result.status == 503) {
            response.headers.emplace_back("Retry-After", "2");
        }
        return response;
    }
    Json json = {{"outcome", result.outcome}};
    json.update(result.members);
    return JsonResponse(result.status, json);
}

/// The results of a batch, as they come.
struct Batch {
    Json results = Json::object();
    std::size_t open = 0;
    int worst = 200;
    Reply reply;

    void Note(const std::string& property, const WishResult& result) {
        results[property] = result.ToJson();
        worst = std::max(worst, result.status);
    }
    void Answer() const { reply(JsonResponse(worst, {{"results", results}})); }
};

/// Checks all wishes. Returns: the checked ones, or nothing after it has answered which fail.
std::optional<std::vector<CheckedWish>> CheckAll(const Services& services, const Request& request, const Json& values,
                                                 Batch& batch) {
    std::vector<CheckedWish> checked;
    for (const auto& [property, value] : values.items()) {
        CheckedWish wish;
        if (const auto problem =
                CheckWish(services.fleet, {request.segments[3], property, value}, request.identity, checked, wish)) {
            batch.Note(property, *problem);
        } else {
            checked.push_back(wish);
        }
    }
    if (batch.results.empty()) {
        return checked;
    }
    for (const CheckedWish& wish : checked) {
        batch.results[wish.property->name] = {{"outcome", "not-sent"},
                                              {"status", 409},
                                              {"detail", "nothing was sent, because another value is not accepted"}};
    }
    batch.Answer();
    return std::nullopt;
}

}  // namespace

void SetDeviceProperty(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<WishTerms> terms = ReadTerms(*request, reply);
    const FleetDevice* const device = terms ? FindDevice(services, *request, reply) : nullptr;
    if (device == nullptr || FindProperty(*request, reply) == nullptr) {
        return;
    }
    const std::optional<Json> body = ReadBody(*request, reply);
    if (!body || !MatchesRevision(*request, *device, reply)) {
        return;
    }
    if (!body->is_object() || (!body->empty() && !body->contains("value"))) {
        reply(ProblemResponse(*request, 400, "malformed-json", "expected {\"value\": ...}"));
        return;
    }
    const Wish wish{request->segments[3], request->segments[5], body->value("value", Json())};
    CheckedWish checked;
    if (const auto problem = CheckWish(services.fleet, wish, request->identity, {}, checked)) {
        reply(ResponseTo(*request, *problem));
        return;
    }
    Send(checked, request->identity.name, *terms,
         [request, reply](const WishResult& result) { reply(ResponseTo(*request, result)); });
}

void SetDeviceProperties(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<WishTerms> terms = ReadTerms(*request, reply);
    const FleetDevice* const device = terms ? FindDevice(services, *request, reply) : nullptr;
    const std::optional<Json> body = device != nullptr ? ReadBody(*request, reply) : std::nullopt;
    if (!body || !MatchesRevision(*request, *device, reply)) {
        return;
    }
    const Json values = body->is_object() ? body->value("values", Json()) : Json();
    if (!values.is_object() || values.empty()) {
        reply(ProblemResponse(*request, 400, "malformed-json", "expected {\"values\": {\"PROPERTY\": ...}}"));
        return;
    }
    const auto batch = std::make_shared<Batch>();
    batch->reply = reply;
    const auto wishes = CheckAll(services, *request, values, *batch);
    if (!wishes) {
        return;
    }
    batch->open = wishes->size();
    for (const CheckedWish& wish : *wishes) {
        Send(wish, request->identity.name, *terms, [batch, name = wish.property->name](const WishResult& result) {
            batch->Note(name, result);
            if (--batch->open == 0) {
                batch->Answer();
            }
        });
    }
}

}  // namespace Morquil::Gateway
