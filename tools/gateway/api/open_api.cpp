#include "gateway/api/open_api.h"

#include <algorithm>
#include <array>
#include <string>

#include "gateway/api/endpoint.h"
#include "gateway/api/routes.h"

namespace Morquil::Gateway {
namespace {

/// What the routes do not say: the names of bodies' shapes, and of parameters.
struct Shapes {
    std::string_view method;
    std::string_view path;
    std::string_view request;   // empty: none
    std::string_view response;  // of 2xx; empty: none
    std::string_view query = {};
};

// clang-format off
constexpr std::array shapes{
    Shapes{"GET",    "/api/v1/me",         "", "Me"},
    Shapes{"GET",    "/api/v1/properties", "", "PropertyList"},
    Shapes{"GET",    "/api/v1/openapi.json", "", "Anything"},
    Shapes{"POST",   "/api/v1/reload",         "",            ""},
    Shapes{"GET",    "/api/v1/devices",        "",            "DeviceList"},
    Shapes{"POST",   "/api/v1/devices",        "DeviceEdit",  "DeviceEntry"},
    Shapes{"GET",    "/api/v1/devices/{name}", "",            "DeviceWithStates"},
    Shapes{"PATCH",  "/api/v1/devices/{name}", "DeviceEdit",  "DeviceEntry"},
    Shapes{"DELETE", "/api/v1/devices/{name}", "",            ""},
    Shapes{"POST",   "/api/v1/probe",          "Address",     "Diagnosis"},
    Shapes{"GET",    "/api/v1/devices/{name}/properties",            "",          "States"},
    Shapes{"PATCH",  "/api/v1/devices/{name}/properties",            "SetValues", "SetResults", "wait deadline"},
    Shapes{"GET",    "/api/v1/devices/{name}/properties/{property}", "",          "PropertyState"},
    Shapes{"PUT",    "/api/v1/devices/{name}/properties/{property}", "SetValue",  "SetResult", "wait deadline"},
    Shapes{"POST",   "/api/v1/login",             "SignIn",     ""},
    Shapes{"POST",   "/api/v1/logout",            "",           ""},
    Shapes{"POST",   "/api/v1/logout-everywhere", "",           ""},
    Shapes{"GET",    "/api/v1/users",             "",           "UserList"},
    Shapes{"POST",   "/api/v1/users",             "UserEdit",   ""},
    Shapes{"PATCH",  "/api/v1/users/{name}",      "UserEdit",   ""},
    Shapes{"DELETE", "/api/v1/users/{name}",      "",           ""},
    Shapes{"GET",    "/api/v1/tokens",            "",           "TokenList"},
    Shapes{"POST",   "/api/v1/tokens",            "TokenEdit",  "NewToken"},
    Shapes{"DELETE", "/api/v1/tokens/{id}",       "",           ""},
    Shapes{"GET",    "/api/v1/history", "", "Rows", "device from to limit after format"},
    Shapes{"GET",    "/api/v1/audit",   "", "Rows", "device from to limit after format"},
    Shapes{"GET",    "/api/v1/salvos",              "",         "SalvoList"},
    Shapes{"POST",   "/api/v1/salvos",              "Salvo",    "Salvo"},
    Shapes{"POST",   "/api/v1/salvos/capture",      "Capture",  "Steps"},
    Shapes{"GET",    "/api/v1/salvos/{name}",       "",         "Salvo"},
    Shapes{"PUT",    "/api/v1/salvos/{name}",       "Salvo",    "Salvo"},
    Shapes{"DELETE", "/api/v1/salvos/{name}",       "",         ""},
    Shapes{"POST",   "/api/v1/salvos/{name}/run",   "RunSalvo", "StartedRun"},
    Shapes{"GET",    "/api/v1/runs/{id}",           "",         "Run"},
    Shapes{"POST",   "/api/v1/runs/{id}/roll-back", "",         "StartedRun"},
};
// clang-format on

constexpr std::string_view parameters = R"json({
"name": {"name": "name", "in": "path", "required": true, "schema": {"type": "string"}},
"id": {"name": "id", "in": "path", "required": true, "schema": {"type": "string"}},
"wait": {"name": "wait", "in": "query", "schema": {"enum": ["confirmed", "queued"], "default": "confirmed"},
    "description": "Whether to answer when the device has settled the change, or at once"},
"device": {"name": "device", "in": "query", "schema": {"type": "string"}},
"from": {"name": "from", "in": "query", "schema": {"type": "string", "format": "date-time"}},
"to": {"name": "to", "in": "query", "schema": {"type": "string", "format": "date-time"}},
"limit": {"name": "limit", "in": "query", "schema": {"type": "integer", "minimum": 1, "maximum": 1000}},
"after": {"name": "after", "in": "query", "schema": {"type": "string"}, "description": "The `next` of the page before"},
"format": {"name": "format", "in": "query", "schema": {"enum": ["json", "csv", "jsonl"], "default": "json"},
    "description": "csv and jsonl have all rows"},
"deadline": {"name": "deadline", "in": "query", "schema": {"type": "string", "pattern": "^[0-9]+m?s$", "default": "5s"},
    "description": "How long to wait for the device: up to 60s"}
})json";

/// The property in a path is one of the table.
Json PropertyParameter() {
    Json names = Json::array();
    for (const Properties::Property& property : Properties::AllProperties()) {
        names.push_back(property.name);
    }
    return {{"name", "property"}, {"in", "path"}, {"required", true}, {"schema", {{"enum", names}}}};
}

Json ReferenceTo(std::string_view kind, std::string_view name) {
    return {{"$ref", "#/components/" + std::string(kind) + "/" + std::string(name)}};
}

const Shapes* FindShapes(const Route& route) {
    const auto found = std::find_if(shapes.begin(), shapes.end(), [&](const Shapes& candidate) {
        return candidate.method == route.method && candidate.path == route.path;
    });
    return found == shapes.end() ? nullptr : &*found;
}

/// "GET", "/api/v1/devices/{name}" to "get-devices-name".
std::string OperationId(const Route& route) {
    std::string id(route.method);
    id += route.path.substr(std::string_view("/api/v1").size());
    std::replace(id.begin(), id.end(), '/', '-');
    std::erase_if(id, [](char c) { return c == '{' || c == '}'; });
    std::transform(id.begin(), id.end(), id.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return id;
}

void AddParameters(Json& operation, const Route& route, std::string_view query) {
    std::string_view path = route.path;
    for (std::size_t begin = path.find('{'); begin != std::string_view::npos; begin = path.find('{')) {
        const std::size_t end = path.find('}');
        operation["parameters"].push_back(ReferenceTo("parameters", path.substr(begin + 1, end - begin - 1)));
        path.remove_prefix(end + 1);
    }
    while (!query.empty()) {
        const std::size_t end = std::min(query.find(' '), query.size());
        operation["parameters"].push_back(ReferenceTo("parameters", query.substr(0, end)));
        query.remove_prefix(std::min(end + 1, query.size()));
    }
}

/// The shape of an answer; empty if it has no body.
std::string_view ShapeOfAnswer(const Shapes* shapesOfRoute, int status) {
    if (status == 204 || shapesOfRoute == nullptr) {
        return status == 204 ? "" : "Anything";
    }
    // A batch answers in one form, whatever became of it.
    return status < 300 || shapesOfRoute->response == "SetResults" ? shapesOfRoute->response : "Problem";
}

void AddAnswer(Json& responses, const Shapes* shapesOfRoute, int status) {
    Json response = {{"description", ReasonOf(status)}};
    const std::string_view shape = ShapeOfAnswer(shapesOfRoute, status);
    if (!shape.empty()) {
        const char* const type = shape == "Problem" ? "application/problem+json" : "application/json";
        response["content"][type]["schema"] = ReferenceTo("schemas", shape);
    }
    responses[std::to_string(status)] = std::move(response);
}

Json OperationOf(const Route& route) {
    const Shapes* const found = FindShapes(route);
    Json operation = {
        {"operationId", OperationId(route)},
        {"summary", route.summary},
        {"description", "Needs the right \"" +
                            std::string(std::find_if(rightTable.begin(), rightTable.end(),
                                                     [&](const RightRow& row) { return row.right == route.right; })
                                            ->name) +
                            "\"."}};
    AddParameters(operation, route, found != nullptr ? found->query : std::string_view());
    Json responses = Json::object();
    for (const ApiExample& example : ApiExamples()) {
        if (example.method != route.method || example.path != route.path) {
            continue;
        }
        AddAnswer(responses, found, example.status);
        if (!example.body.empty()) {
            Json& content = operation["requestBody"]["content"]["application/json"];
            content["schema"] =
                ReferenceTo("schemas", found != nullptr && !found->request.empty() ? found->request : "Anything");
            content["examples"][std::string(example.name)]["value"] = Json::parse(example.body);
        }
    }
    responses["default"] = {
        {"description", "A problem"},
        {"content", {{"application/problem+json", {{"schema", ReferenceTo("schemas", "Problem")}}}}}};
    operation["responses"] = std::move(responses);
    return operation;
}

}  // namespace

Json OpenApiDocument() {
    Json paths = Json::object();
    for (const Route& route : AllRoutes()) {
        std::string method(route.method);
        std::transform(method.begin(), method.end(), method.begin(),
                       [](char c) { return static_cast<char>(c - 'A' + 'a'); });
        paths[std::string(route.path)][method] = OperationOf(route);
    }
    Json known = Json::parse(parameters);
    known["property"] = PropertyParameter();
    return {{"openapi", "3.1.0"},
            {"info",
             {{"title", "morquil-gateway"},
              {"version", "1"},
              {"description", "A fleet of Morquil converters. Errors are problems in the form of RFC 9457."}}},
            {"servers", Json::array({{{"url", "/"}}})},
            {"security", Json::array({Json::object(), {{"token", Json::array()}}, {{"session", Json::array()}}})},
            {"paths", paths},
            {"components",
             {{"schemas", OpenApiSchemas()},
              {"parameters", known},
              {"securitySchemes",
               {{"token", {{"type", "http"}, {"scheme", "bearer"}}},
                {"session", {{"type", "apiKey"}, {"in", "cookie"}, {"name", "morquil_session"}}}}}}}};
}

void GetOpenApi(Services&, const SharedRequest&, const Reply& reply) {
    static const std::string document = DumpJson(OpenApiDocument());
    Response response;
    response.permanent = document;
    reply(std::move(response));
}

}  // namespace Morquil::Gateway
