#include "gateway/api/people_endpoints.h"

#include "gateway/api/people_json.h"

namespace Morquil::Gateway {
namespace {

constexpr std::size_t nameSegment = 3;  // /api/v1/users/{name}

template <class Rows>
Json ListOf(const Rows& rows) {
    Json list = Json::array();
    for (const auto& row : rows) {
        list.push_back(ToJson(row));
    }
    return list;
}

Response ResponseTo(const Request& request, PeopleProblem problem) {
    const std::string sentence(SentenceOf(problem));
    switch (problem) {
        case PeopleProblem::NotFound:
            return ProblemResponse(request, 404, "unknown-name", sentence);
        case PeopleProblem::Exists:
            return ProblemResponse(request, 409, "name-taken", sentence);
        case PeopleProblem::LastAdmin:
            return ProblemResponse(request, 409, "last-admin", sentence);
        case PeopleProblem::BadName:
        case PeopleProblem::BadPassword:
            return ProblemResponse(request, 422, "malformed-value", sentence);
        case PeopleProblem::Busy:
            return ProblemResponse(request, 503, "busy", sentence);
        case PeopleProblem::NoRoom:
            return ProblemResponse(request, 409, "no-room", sentence);
        case PeopleProblem::None:
            break;
    }
    return NoContent();
}

/// Returns: nothing after it has answered what is wrong.
template <class Wanted>
std::optional<Wanted> Read(const Request& request, const Reply& reply, const std::optional<Json>& body,
                           std::optional<Wanted> (*read)(const Json&, std::string&)) {
    std::string problem;
    std::optional<Wanted> wanted = body ? read(*body, problem) : std::nullopt;
    if (body && !wanted) {
        reply(ProblemResponse(request, 422, "malformed-value", problem));
    }
    return wanted;
}

}  // namespace

void GetUsers(Services& services, const SharedRequest&, const Reply& reply) {
    reply(JsonResponse(200, {{"users", ListOf(services.people.Users())}}));
}

void AddUser(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<Json> body = ReadBody(*request, reply);
    const std::optional<UserChange> change = Read<UserChange>(*request, reply, body, ReadUserChange);
    if (!change) {
        return;
    }
    const Json nameJson = body->value("name", Json());
    const std::string name = nameJson.is_string() ? nameJson.get<std::string>() : std::string();
    services.people.AddUser(name, *change, [request, reply, name](PeopleProblem problem) {
        Response response = ResponseTo(*request, problem);
        if (problem == PeopleProblem::None) {
            response.status = 201;
            response.headers.emplace_back("Location", "/api/v1/users/" + name);
        }
        reply(std::move(response));
    });
}

void EditUser(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<Json> body = ReadBody(*request, reply);
    const std::optional<UserChange> change = Read<UserChange>(*request, reply, body, ReadUserChange);
    if (change && body->contains("name")) {
        reply(ProblemResponse(*request, 422, "malformed-value", "a user's name cannot be changed"));
    } else if (change) {
        services.people.ChangeUser(request->segments[nameSegment], *change,
                                   [request, reply](PeopleProblem problem) { reply(ResponseTo(*request, problem)); });
    }
}

void RemoveUser(Services& services, const SharedRequest& request, const Reply& reply) {
    reply(ResponseTo(*request, services.people.RemoveUser(request->segments[nameSegment])));
}

void GetTokens(Services& services, const SharedRequest&, const Reply& reply) {
    reply(JsonResponse(200, {{"tokens", ListOf(services.people.Tokens())}}));
}

void AddToken(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<Token> wanted = Read<Token>(*request, reply, ReadBody(*request, reply), ReadWantedToken);
    if (!wanted) {
        return;
    }
    std::string id;
    std::string secret;
    const PeopleProblem problem = services.people.AddToken(*wanted, id, secret);
    Response response = problem == PeopleProblem::None ? JsonResponse(201, {{"id", id}, {"token", secret}})
                                                       : ResponseTo(*request, problem);
    response.headers.emplace_back("Cache-Control", "no-store");
    reply(std::move(response));
}

void RevokeToken(Services& services, const SharedRequest& request, const Reply& reply) {
    reply(ResponseTo(*request, services.people.RevokeToken(request->segments[nameSegment])));
}

}  // namespace Morquil::Gateway
