#include "gateway/api/salvo_endpoints.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

constexpr std::size_t nameSegment = 3;  // /api/v1/salvos/{name}, /api/v1/runs/{id}
constexpr std::size_t mostPatterns = 256;

/// Whether somebody's scopes include every step. Others do not see the salvo, nor its runs.
template <class Steps>
bool AreCovered(const Identity& identity, const Steps& steps) {
    return std::all_of(steps.begin(), steps.end(),
                       [&](const auto& step) { return Covers(identity.scopes, step.device, step.property); });
}

Response OutOfScope(const Request& request) {
    return ProblemResponse(request, 403, "forbidden",
                           "your scope does not include all of these devices and properties");
}

/// Returns: null after it has answered that there is none.
const Salvo* FindSalvo(const Services& services, const Request& request, const Reply& reply) {
    const std::string& name = request.segments[nameSegment];
    const Salvo* const salvo = services.salvos.Find(name);
    if (salvo != nullptr && AreCovered(request.identity, salvo->steps)) {
        return salvo;
    }
    reply(ProblemResponse(request, 404, "unknown-name", "there is no salvo '" + name + "'"));
    return nullptr;
}

const Run* FindRun(const Services& services, const Request& request, const Reply& reply) {
    const std::string& id = request.segments[nameSegment];
    const Run* const run = services.salvos.FindRun(id);
    if (run != nullptr && AreCovered(request.identity, run->steps)) {
        return run;
    }
    reply(ProblemResponse(request, 404, "unknown-name", "there is no run '" + id + "'"));
    return nullptr;
}

/// Returns: nothing after it has answered what is wrong.
std::optional<Salvo> ReadWanted(const Request& request, Json body, const Reply& reply) {
    std::string problem;
    std::optional<Salvo> salvo = ReadSalvo(body, problem);
    if (!salvo) {
        reply(ProblemResponse(request, 422, "malformed-value", problem));
    } else if (!AreCovered(request.identity, salvo->steps)) {
        reply(OutOfScope(request));
        return std::nullopt;
    }
    return salvo;
}

void Keep(Services& services, const Request& request, const Salvo& salvo, int status, const Reply& reply) {
    if (!services.salvos.Put(salvo)) {
        reply(ProblemResponse(request, 409, "no-room", "there are too many salvos already"));
        return;
    }
    Response response = JsonResponse(status, ToJson(salvo));
    if (status == 201) {
        response.headers.emplace_back("Location", "/api/v1/salvos/" + salvo.name);
    }
    reply(std::move(response));
}

/// A list of texts; all for a member that is missing. Nothing if it is something else.
std::optional<std::vector<std::string>> TextsIn(const Json& body, const char* member) {
    const Json list = body.is_object() ? body.value(member, Json::array()) : Json();
    const bool isGood = list.is_array() && list.size() <= mostPatterns &&
                        std::all_of(list.begin(), list.end(), [](const Json& text) { return text.is_string(); });
    return isGood ? std::optional(list.get<std::vector<std::string>>()) : std::nullopt;
}

/// Returns: nothing after it has answered what is wrong.
std::optional<RunOptions> ReadOptions(const Request& request, const Reply& reply) {
    const std::optional<Json> body = request.body.empty() ? Json::object() : ReadBody(request, reply);
    if (!body) {
        return std::nullopt;
    }
    RunOptions options{.who = request.identity.name,
                       .idempotencyKey = std::string(request.Header("idempotency-key").substr(0, 256))};
    const Json dryRun = body->is_object() ? body->value("dryRun", Json(false)) : Json();
    const Json onFailure = body->is_object() ? body->value("onFailure", Json()) : Json();
    options.onFailure = onFailure.is_string() ? FindOnFailure(onFailure.get<std::string>()) : std::nullopt;
    if (!dryRun.is_boolean() || (!onFailure.is_null() && !options.onFailure)) {
        reply(ProblemResponse(request, 422, "malformed-value",
                              "expected {\"dryRun\": true or false, \"onFailure\": stop, continue or roll-back}"));
        return std::nullopt;
    }
    options.isDryRun = dryRun.get<bool>();
    return options;
}

Response ResponseTo(const Services& services, const Request& request, const StartResult& result) {
    using Outcome = StartResult::Outcome;
    if (result.outcome == Outcome::KeyInUse) {
        return ProblemResponse(request, 409, "key-in-use", "this Idempotency-Key was used for another request",
                               {{"run", result.run}});
    }
    if (result.outcome == Outcome::NotOffered) {
        return ProblemResponse(request, 422, "not-offered", "nothing was set: a step is not accepted",
                               {{"steps", StepsJson(result.steps)}});
    }
    Response response = JsonResponse(202, {{"run", ToJson(*services.salvos.FindRun(result.run))}});
    response.headers.emplace_back("Location", "/api/v1/runs/" + result.run);
    return response;
}

}  // namespace

void GetSalvos(Services& services, const SharedRequest& request, const Reply& reply) {
    Json list = Json::array();
    for (const Salvo& salvo : services.salvos.All()) {
        if (AreCovered(request->identity, salvo.steps)) {
            list.push_back(ToJson(salvo));
        }
    }
    reply(JsonResponse(200, {{"salvos", list}}));
}

void GetSalvo(Services& services, const SharedRequest& request, const Reply& reply) {
    if (const Salvo* const salvo = FindSalvo(services, *request, reply)) {
        reply(JsonResponse(200, ToJson(*salvo)));
    }
}

void AddSalvo(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<Json> body = ReadBody(*request, reply);
    const std::optional<Salvo> salvo = body ? ReadWanted(*request, *body, reply) : std::nullopt;
    if (!salvo) {
        return;
    }
    if (services.salvos.Find(salvo->name) != nullptr) {
        reply(ProblemResponse(*request, 409, "name-taken", "there is a salvo '" + salvo->name + "' already"));
        return;
    }
    Keep(services, *request, *salvo, 201, reply);
}

void ReplaceSalvo(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<Json> body = ReadBody(*request, reply);
    if (!body || FindSalvo(services, *request, reply) == nullptr) {
        return;
    }
    Json named = *body;
    if (named.is_object()) {
        named["name"] = request->segments[nameSegment];
    }
    if (const std::optional<Salvo> salvo = ReadWanted(*request, std::move(named), reply)) {
        Keep(services, *request, *salvo, 200, reply);
    }
}

void RemoveSalvo(Services& services, const SharedRequest& request, const Reply& reply) {
    if (const Salvo* const salvo = FindSalvo(services, *request, reply)) {
        services.salvos.Erase(std::string(salvo->name));
        reply(NoContent());
    }
}

void CaptureSalvo(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<Json> body = ReadBody(*request, reply);
    if (!body) {
        return;
    }
    const auto devices = TextsIn(*body, "devices");
    const auto patterns = TextsIn(*body, "properties");
    if (!devices || devices->empty() || !patterns) {
        reply(ProblemResponse(*request, 422, "malformed-value",
                              "expected {\"devices\": [NAME, ...], \"properties\": [PATTERN, ...]}"));
        return;
    }
    Salvos::Captured captured = services.salvos.Capture(*devices, *patterns);
    if (!captured.unknown.empty()) {
        reply(ProblemResponse(*request, 404, "unknown-name", "there is no device '" + captured.unknown.front() + "'"));
        return;
    }
    std::erase_if(captured.steps,
                  [&](const Step& step) { return !Covers(request->identity.scopes, step.device, step.property); });
    reply(JsonResponse(200, {{"steps", StepsJson(captured.steps)}}));
}

void RunSalvo(Services& services, const SharedRequest& request, const Reply& reply) {
    const Salvo* const salvo = FindSalvo(services, *request, reply);
    const std::optional<RunOptions> options = salvo != nullptr ? ReadOptions(*request, reply) : std::nullopt;
    if (options) {
        reply(ResponseTo(services, *request, services.salvos.Start(salvo->name, *options)));
    }
}

void GetRun(Services& services, const SharedRequest& request, const Reply& reply) {
    if (const Run* const run = FindRun(services, *request, reply)) {
        reply(JsonResponse(200, ToJson(*run)));
    }
}

void RollBackRun(Services& services, const SharedRequest& request, const Reply& reply) {
    const Run* const run = FindRun(services, *request, reply);
    if (run == nullptr) {
        return;
    }
    if (!services.salvos.RollBack(run->id, request->identity.name)) {
        reply(ProblemResponse(*request, 409, "not-possible",
                              "a run can be rolled back once, when it has ended and was no dry run"));
        return;
    }
    reply(JsonResponse(202, {{"run", ToJson(*run)}}));
}

}  // namespace Morquil::Gateway
