#include "gateway/people/documents.h"

#include <nlohmann/json.hpp>

namespace Morquil::Gateway {
namespace {

using Json = nlohmann::ordered_json;

Json ToJson(const std::vector<Scope>& scopes) {
    Json list = Json::array();
    for (const Scope& scope : scopes) {
        list.push_back({{"devices", scope.devices}, {"properties", scope.properties}});
    }
    return list;
}

std::vector<Scope> ReadScopes(const Json& list) {
    std::vector<Scope> scopes;
    for (const Json& scope : list) {
        scopes.push_back({scope.at("devices"), scope.at("properties")});
    }
    return scopes;
}

// Somebody whose role cannot be read has none: `value` throws.
Role ReadRole(const Json& json) {
    return FindRole(json.get<std::string>()).value();
}

User UserIn(const Json& json) {
    return {.name = json.at("name"),
            .role = ReadRole(json.at("role")),
            .scopes = ReadScopes(json.at("scopes")),
            .passwordHash = json.at("password")};
}

Token TokenIn(const Json& json) {
    Token token{.id = json.at("id"),
                .name = json.at("name"),
                .role = ReadRole(json.at("role")),
                .scopes = ReadScopes(json.at("scopes")),
                .created = ParseTime(json.at("created").get<std::string>()).value(),
                .hash = json.at("hash")};
    if (!json.at("expires").is_null()) {
        token.expires = ParseTime(json.at("expires").get<std::string>()).value();
    }
    return token;
}

template <class Result>
std::optional<Result> Read(const std::string& document, Result (*read)(const Json&)) {
    try {
        return read(Json::parse(document));
    } catch (const Json::exception&) {
        return std::nullopt;
    } catch (const std::bad_optional_access&) {
        return std::nullopt;
    }
}

}  // namespace

std::string ToDocument(const User& user) {
    return Json{{"name", user.name},
                {"role", NameOf(user.role)},
                {"scopes", ToJson(user.scopes)},
                {"password", user.passwordHash}}
        .dump();
}

std::string ToDocument(const Token& token) {
    return Json{{"id", token.id},
                {"name", token.name},
                {"role", NameOf(token.role)},
                {"scopes", ToJson(token.scopes)},
                {"created", FormatTime(token.created)},
                {"expires", token.expires ? Json(FormatTime(*token.expires)) : Json()},
                {"hash", token.hash}}
        .dump();
}

std::optional<User> ReadUser(const std::string& document) {
    return Read<User>(document, UserIn);
}

std::optional<Token> ReadToken(const std::string& document) {
    return Read<Token>(document, TokenIn);
}

}  // namespace Morquil::Gateway
