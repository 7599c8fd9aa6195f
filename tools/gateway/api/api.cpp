#include "gateway/api/api.h"

#include <algorithm>

#include "gateway/api/authenticate.h"
#include "gateway/api/guard.h"
#include "gateway/api/recording.h"
#include "gateway/api/routes.h"
#include "gateway/api/setting.h"
#include "gateway/text/log.h"

namespace Morquil::Gateway {
namespace {

constexpr std::size_t mostScopes = 256;

/// Everybody may sign in, and read the panel's files and the health.
bool NeedsIdentity(const Request& request) {
    return (request.path.starts_with("/api/") && request.path != "/api/v1/login") || request.path == "/metrics";
}

std::vector<std::string_view> SplitAtCommas(std::string_view text) {
    std::vector<std::string_view> words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(','), text.size());
        if (end != 0) {
            words.push_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

/// Whether the words mean any property; `unknown` is the first that means none.
bool AreProperties(const std::vector<std::string_view>& patterns, std::string_view& unknown) {
    const auto found = std::find_if(patterns.begin(), patterns.end(),
                                    [](std::string_view pattern) { return Properties::Matching(pattern).empty(); });
    unknown = found == patterns.end() ? std::string_view() : *found;
    return found == patterns.end();
}

}  // namespace

std::optional<Response> Api::Admit(Request& request) const {
    if (auto refusal = CheckHost(request, services_.config.server)) {
        return refusal;
    }
    if (auto refusal = CheckOrigin(request)) {
        return refusal;
    }
    return NeedsIdentity(request) ? Authenticate(services_.people, request) : std::nullopt;
}

void Api::Handle(Request request, const Reply& reply) {
    if (auto refusal = Admit(request)) {
        reply(*std::move(refusal));
        return;
    }
    std::string methods;
    const Route* const route = FindRoute(request, methods);
    if (route == nullptr) {
        Response response =
            methods.empty() ? ProblemResponse(request, 404, "unknown-path", "there is nothing at " + request.path)
                            : ProblemResponse(request, 405, "method-not-allowed", request.path + " allows " + methods);
        if (!methods.empty()) {
            response.headers.emplace_back("Allow", methods);
        }
        reply(std::move(response));
        return;
    }
    const auto shared = std::make_shared<const Request>(std::move(request));
    Dispatch(*route, shared, [this, shared, reply, stopwatch = Stopwatch()](Response response) {
        RecordAttempts(services_, *shared, response, stopwatch.Elapsed());
        reply(std::move(response));
    });
}

void Api::Dispatch(const Route& route, const SharedRequest& request, const Reply& reply) {
    if (auto refusal = CheckContentType(*request)) {
        reply(*std::move(refusal));
    } else if (!May(request->identity.role, route.right)) {
        reply(ProblemResponse(*request, 403, "forbidden",
                              "the role " + std::string(NameOf(request->identity.role)) + " does not allow this"));
    } else {
        route.endpoint(services_, request, reply);
    }
}

std::optional<View> Api::ReadView(const Request& request, Response& refusal) const {
    View view;
    view.permitted = request.identity.scopes;
    const auto devices = SplitAtCommas(request.Query("devices").value_or("*"));
    const auto properties = SplitAtCommas(request.Query("properties").value_or("*"));
    std::string_view unknown;
    if (!AreProperties(properties, unknown)) {
        refusal = ProblemResponse(request, 400, "unknown-name", "no property matches '" + std::string(unknown) + "'");
        return std::nullopt;
    }
    if (devices.size() * properties.size() > mostScopes) {
        refusal = ProblemResponse(request, 400, "malformed-query", "too many devices and properties; use patterns");
        return std::nullopt;
    }
    view.asked.clear();
    for (const std::string_view device : devices) {
        for (const std::string_view property : properties) {
            view.asked.push_back({std::string(device), std::string(property)});
        }
    }
    return view;
}

void Api::Command(const Request& request, std::string_view text, std::function<void(Json)> done) {
    const Json command = Json::parse(text, nullptr, false);
    const auto answer = [done,
                         id = command.is_object() ? command.value("id", Json()) : Json()](const WishResult& result) {
        done({{"id", id}, {"status", result.status}, {"body", result.ToJson()}});
    };
    const auto isText = [&](const char* member) { return command.contains(member) && command[member].is_string(); };
    if (!command.is_object() || !isText("op") || command["op"] != "set" || !isText("device") || !isText("property")) {
        answer({400, "malformed-command",
                "expected {\"id\": ..., \"op\": \"set\", \"device\": ..., \"property\": ..., \"value\": ...}"});
        return;
    }
    const Wish wish{command["device"].get<std::string>(), command["property"].get<std::string>(),
                    command.value("value", Json())};
    const auto record = [this, request, wish, answer, stopwatch = Stopwatch()](const WishResult& result) {
        RecordCommand(services_, request, wish, result, stopwatch.Elapsed());
        answer(result);
    };
    CheckedWish checked;
    if (const auto problem = CheckWish(services_.fleet, wish, request.identity, {}, checked)) {
        record(*problem);
        return;
    }
    Send(checked, request.identity.name, {}, record);
}

}  // namespace Morquil::Gateway
