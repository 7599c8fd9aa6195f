// Users and tokens in the form of the API: without secrets and their hashes.
#pragma once

#include <optional>
#include <string>

#include "gateway/api/response.h"
#include "gateway/people/people.h"

namespace Morquil::Gateway {

/// {name, role, scopes}
Json ToJson(const User& user);
/// {id, name, role, scopes, created, expires}
Json ToJson(const Token& token);

// What somebody has sent. Nothing, and the reason in `problem`, if it is wrong.
std::optional<UserChange> ReadUserChange(const Json& json, std::string& problem);
std::optional<Token> ReadWantedToken(const Json& json, std::string& problem);

}  // namespace Morquil::Gateway
