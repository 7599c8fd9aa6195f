#include <array>

#include "gateway/api/open_api.h"

namespace Morquil::Gateway {
namespace {

// clang-format off
constexpr std::array examples{
    ApiExample{"me",            "GET", "/api/v1/me",         "/api/v1/me",         "", 200},
    ApiExample{"allProperties", "GET", "/api/v1/properties", "/api/v1/properties", "", 200},
    ApiExample{"document",      "GET", "/api/v1/openapi.json", "/api/v1/openapi.json", "", 200},

    ApiExample{"reload",        "POST", "/api/v1/reload",     "/api/v1/reload",     "", 204},

    ApiExample{"allDevices",    "GET",    "/api/v1/devices",        "/api/v1/devices",             "", 200},
    ApiExample{"oneDevice",     "GET",    "/api/v1/devices/{name}", "/api/v1/devices/converter-1", "", 200},
    ApiExample{"unknownDevice", "GET",    "/api/v1/devices/{name}", "/api/v1/devices/convertor-1", "", 404},
    ApiExample{"addDevice",     "POST",   "/api/v1/devices",        "/api/v1/devices",             R"({"name": "cam-1", "label": "Camera 1", "address": "127.250.250.30", "room": "Studio A", "tags": ["news"]})", 201},
    ApiExample{"nameTaken",     "POST",   "/api/v1/devices",        "/api/v1/devices",             R"({"name": "cam-1", "address": "127.250.250.31"})", 409},
    ApiExample{"faultyDevice",  "POST",   "/api/v1/devices",        "/api/v1/devices",             R"({"name": "Camera 2", "address": "127.250.250.31"})", 422},
    ApiExample{"renameDevice",  "PATCH",  "/api/v1/devices/{name}", "/api/v1/devices/cam-1",       R"({"name": "cam-2", "enabled": false})", 200},
    ApiExample{"removeDevice",  "DELETE", "/api/v1/devices/{name}", "/api/v1/devices/cam-2",       "", 204},
    ApiExample{"probe",         "POST",   "/api/v1/probe",          "/api/v1/probe",               R"({"address": "127.250.250.31"})", 200},

    ApiExample{"allValues",   "GET",   "/api/v1/devices/{name}/properties",            "/api/v1/devices/converter-1/properties",                      "", 200},
    ApiExample{"oneValue",    "GET",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/proc-amp.gain",        "", 200},
    ApiExample{"setValue",    "PUT",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/proc-amp.gain",        R"({"value": 12})", 200},
    ApiExample{"queueValue",  "PUT",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/color.red?wait=queued", R"({"value": 3})", 202},
    ApiExample{"notOffered",  "PUT",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/output.video-mode",    R"({"value": "1080i51"})", 422},
    ApiExample{"setWord",     "PUT",   "/api/v1/devices/{name}/properties/{property}", "/api/v1/devices/converter-1/properties/output.video-mode",    R"({"value": "1080p50"})", 200},
    ApiExample{"setSeveral",  "PATCH", "/api/v1/devices/{name}/properties",            "/api/v1/devices/converter-1/properties?deadline=5s",          R"({"values": {"proc-amp.gain": -3, "color.green": 4}})", 200},
    ApiExample{"noneIsSet",   "PATCH", "/api/v1/devices/{name}/properties",            "/api/v1/devices/converter-1/properties",                      R"({"values": {"proc-amp.gain": 99, "color.green": 4}})", 422},

    ApiExample{"addUser",     "POST",   "/api/v1/users",             "/api/v1/users",             R"({"name": "anna", "role": "admin", "password": "correct horse battery", "scopes": [{"devices": "*", "properties": "*"}]})", 201},
    ApiExample{"allUsers",    "GET",    "/api/v1/users",             "/api/v1/users",             "", 200},
    ApiExample{"signIn",      "POST",   "/api/v1/login",             "/api/v1/login",             R"({"user": "anna", "password": "correct horse battery"})", 204},
    ApiExample{"wrong",       "POST",   "/api/v1/login",             "/api/v1/login",             R"({"user": "anna", "password": "guess"})", 401},
    ApiExample{"signOut",     "POST",   "/api/v1/logout",            "/api/v1/logout",            "", 204},
    ApiExample{"everywhere",  "POST",   "/api/v1/logout-everywhere", "/api/v1/logout-everywhere", "", 204},
    ApiExample{"addOperator", "POST",   "/api/v1/users",             "/api/v1/users",             R"({"name": "ben", "role": "viewer", "password": "staple and paper"})", 201},
    ApiExample{"promote",     "PATCH",  "/api/v1/users/{name}",      "/api/v1/users/ben",         R"({"role": "operator"})", 204},
    ApiExample{"removeUser",  "DELETE", "/api/v1/users/{name}",      "/api/v1/users/ben",         "", 204},
    ApiExample{"unknownUser", "DELETE", "/api/v1/users/{name}",      "/api/v1/users/nobody",      "", 404},
    ApiExample{"addToken",    "POST",   "/api/v1/tokens",            "/api/v1/tokens",            R"({"name": "monitor", "role": "viewer", "expires": "2099-01-01T00:00:00Z"})", 201, "/id"},
    ApiExample{"allTokens",   "GET",    "/api/v1/tokens",            "/api/v1/tokens",            "", 200},
    ApiExample{"revoke",      "DELETE", "/api/v1/tokens/{id}",       "/api/v1/tokens/$id",        "", 204},

    ApiExample{"history", "GET", "/api/v1/history", "/api/v1/history?device=converter-1&limit=10", "", 200},
    ApiExample{"audit",   "GET", "/api/v1/audit",   "/api/v1/audit?limit=10",                      "", 200},

    ApiExample{"addSalvo",     "POST",   "/api/v1/salvos",              "/api/v1/salvos",              R"({"name": "evening", "label": "Evening", "steps": [{"device": "converter-1", "property": "proc-amp.gain", "value": 5}], "onFailure": "roll-back"})", 201},
    ApiExample{"allSalvos",    "GET",    "/api/v1/salvos",              "/api/v1/salvos",              "", 200},
    ApiExample{"oneSalvo",     "GET",    "/api/v1/salvos/{name}",       "/api/v1/salvos/evening",      "", 200},
    ApiExample{"replaceSalvo", "PUT",    "/api/v1/salvos/{name}",       "/api/v1/salvos/evening",      R"({"name": "evening", "steps": [{"device": "converter-1", "property": "proc-amp.gain", "value": 6}]})", 200},
    ApiExample{"capture",      "POST",   "/api/v1/salvos/capture",      "/api/v1/salvos/capture",      R"({"devices": ["converter-1"], "properties": ["proc-amp"]})", 200},
    ApiExample{"dryRun",       "POST",   "/api/v1/salvos/{name}/run",   "/api/v1/salvos/evening/run",  R"({"dryRun": true})", 202, "/run/id"},
    ApiExample{"oneRun",       "GET",    "/api/v1/runs/{id}",           "/api/v1/runs/$id",            "", 200},
    ApiExample{"rollBack",     "POST",   "/api/v1/runs/{id}/roll-back", "/api/v1/runs/$id/roll-back",  "", 409},
    ApiExample{"removeSalvo",  "DELETE", "/api/v1/salvos/{name}",       "/api/v1/salvos/evening",      "", 204},
};
// clang-format on

}  // namespace

std::span<const ApiExample> ApiExamples() {
    return examples;
}

}  // namespace Morquil::Gateway
