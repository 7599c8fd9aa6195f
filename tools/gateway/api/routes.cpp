#include "gateway/api/routes.h"

#include <algorithm>
#include <array>

#include "gateway/api/people_endpoints.h"
#include "gateway/api/record_endpoints.h"
#include "gateway/api/salvo_endpoints.h"

namespace Morquil::Gateway {
namespace {

// clang-format off
constexpr std::array routes{
    Route{"GET",    "/api/v1/me",         Right::See, &GetMe,         "Who is asking, and what they may do"},
    Route{"GET",    "/api/v1/properties", Right::See, &GetProperties, "All properties that devices have"},
    Route{"GET",    "/api/v1/openapi.json", Right::See, &GetOpenApi,  "This document"},

    Route{"POST",   "/api/v1/reload",     Right::Maintain, &ReloadConfig, "Reads the configuration and the certificate again"},

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

    Route{"POST",   "/api/v1/login",             Right::See,          &SignIn,            "Signs a user in"},
    Route{"POST",   "/api/v1/logout",            Right::See,          &SignOut,           "Ends this session"},
    Route{"POST",   "/api/v1/logout-everywhere", Right::See,          &SignOutEverywhere, "Ends all sessions of the user"},
    Route{"GET",    "/api/v1/users",             Right::ManagePeople, &GetUsers,          "All users"},
    Route{"POST",   "/api/v1/users",             Right::ManagePeople, &AddUser,           "Adds a user"},
    Route{"PATCH",  "/api/v1/users/{name}",      Right::ManagePeople, &EditUser,          "Changes a user, and ends the sessions"},
    Route{"DELETE", "/api/v1/users/{name}",      Right::ManagePeople, &RemoveUser,        "Removes a user"},
    Route{"GET",    "/api/v1/tokens",            Right::ManagePeople, &GetTokens,         "All tokens, without their secrets"},
    Route{"POST",   "/api/v1/tokens",            Right::ManagePeople, &AddToken,          "Makes a token, which is shown this once"},
    Route{"DELETE", "/api/v1/tokens/{id}",       Right::ManagePeople, &RevokeToken,       "Revokes a token, at once"},

    Route{"GET",    "/api/v1/history", Right::See,      &GetHistory, "The changes of values, the newest first"},
    Route{"GET",    "/api/v1/audit",   Right::SeeAudit, &GetAudit,   "The attempts to change something, the newest first"},

    Route{"GET",    "/api/v1/salvos",              Right::See,       &GetSalvos,    "All salvos"},
    Route{"POST",   "/api/v1/salvos",              Right::EditSalvo, &AddSalvo,     "Adds a salvo"},
    Route{"POST",   "/api/v1/salvos/capture",      Right::EditSalvo, &CaptureSalvo, "The steps that would restore the present state"},
    Route{"GET",    "/api/v1/salvos/{name}",       Right::See,       &GetSalvo,     "A salvo"},
    Route{"PUT",    "/api/v1/salvos/{name}",       Right::EditSalvo, &ReplaceSalvo, "Replaces a salvo"},
    Route{"DELETE", "/api/v1/salvos/{name}",       Right::EditSalvo, &RemoveSalvo,  "Removes a salvo"},
    Route{"POST",   "/api/v1/salvos/{name}/run",   Right::RunSalvo,  &RunSalvo,     "Runs a salvo, or shows what it would change"},
    Route{"GET",    "/api/v1/runs/{id}",           Right::See,       &GetRun,       "A run, with the result of each step"},
    Route{"POST",   "/api/v1/runs/{id}/roll-back", Right::RunSalvo,  &RollBackRun,  "Sets what a run has changed back"},
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
