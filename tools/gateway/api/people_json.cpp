#include "gateway/api/people_json.h"

#include <algorithm>
#include <initializer_list>

namespace Morquil::Gateway {
namespace {

constexpr std::size_t mostScopes = 64;
constexpr std::size_t longestPattern = 128;

Json ScopesJson(const std::vector<Scope>& scopes) {
    Json list = Json::array();
    for (const Scope& scope : scopes) {
        list.push_back({{"devices", scope.devices}, {"properties", scope.properties}});
    }
    return list;
}

bool HasOnly(const Json& json, std::initializer_list<std::string_view> members, std::string& problem) {
    if (!json.is_object()) {
        problem = "expected an object";
        return false;
    }
    for (const auto& [name, value] : json.items()) {
        if (std::find(members.begin(), members.end(), name) == members.end()) {
            problem = "there is no member '" + name + "'";
            return false;
        }
    }
    return true;
}

bool IsPattern(const Json& json, const char* member) {
    return json.contains(member) && json[member].is_string() && !json[member].get<std::string>().empty() &&
           json[member].get<std::string>().size() <= longestPattern;
}

std::optional<std::vector<Scope>> ReadScopes(const Json& list, std::string& problem) {
    const bool isGood =
        list.is_array() && list.size() <= mostScopes && std::all_of(list.begin(), list.end(), [](const Json& scope) {
            return scope.is_object() && IsPattern(scope, "devices") && IsPattern(scope, "properties");
        });
    if (!isGood) {
        problem = "scopes: expected a list of at most 64 of {\"devices\": PATTERN, \"properties\": PATTERN}";
        return std::nullopt;
    }
    std::vector<Scope> scopes;
    for (const Json& scope : list) {
        scopes.push_back({scope["devices"], scope["properties"]});
    }
    return scopes;
}

std::optional<Role> ReadRole(const Json& json, std::string& problem) {
    const std::optional<Role> role = json.is_string() ? FindRole(json.get<std::string>()) : std::nullopt;
    if (!role) {
        problem = "role: expected viewer, operator, engineer or admin";
    }
    return role;
}

}  // namespace

Json ToJson(const User& user) {
    return {{"name", user.name}, {"role", NameOf(user.role)}, {"scopes", ScopesJson(user.scopes)}};
}

Json ToJson(const Token& token) {
    return {{"id", token.id},
            {"name", token.name},
            {"role", NameOf(token.role)},
            {"scopes", ScopesJson(token.scopes)},
            {"created", FormatTime(token.created)},
            {"expires", token.expires ? Json(FormatTime(*token.expires)) : Json()}};
}

std::optional<UserChange> ReadUserChange(const Json& json, std::string& problem) {
    UserChange change;
    if (!HasOnly(json, {"name", "role", "scopes", "password"}, problem)) {
        return std::nullopt;
    }
    if (json.contains("role") && !(change.role = ReadRole(json["role"], problem))) {
        return std::nullopt;
    }
    if (json.contains("scopes") && !(change.scopes = ReadScopes(json["scopes"], problem))) {
        return std::nullopt;
    }
    if (json.contains("password")) {
        if (!json["password"].is_string()) {
            problem = "password: expected a text";
            return std::nullopt;
        }
        change.password = json["password"].get<std::string>();
    }
    return change;
}

std::optional<Token> ReadWantedToken(const Json& json, std::string& problem) {
    if (!HasOnly(json, {"name", "role", "scopes", "expires"}, problem)) {
        return std::nullopt;
    }
    Token token;
    const std::optional<Role> role = ReadRole(json.value("role", Json()), problem);
    const std::optional<std::vector<Scope>> scopes =
        json.contains("scopes") ? ReadScopes(json["scopes"], problem) : std::vector{Scope{}};
    if (!role || !scopes) {
        return std::nullopt;
    }
    const Json expires = json.value("expires", Json());
    token.expires = expires.is_string() ? ParseTime(expires.get<std::string>()) : std::nullopt;
    if (!expires.is_null() && !token.expires) {
        problem = "expires: expected a time such as 2027-01-31T12:00:00Z, or null";
        return std::nullopt;
    }
    if (!json.contains("name") || !json["name"].is_string()) {
        problem = "name: expected a text";
        return std::nullopt;
    }
    token.name = json["name"];
    token.role = *role;
    token.scopes = *scopes;
    return token;
}

}  // namespace Morquil::Gateway
