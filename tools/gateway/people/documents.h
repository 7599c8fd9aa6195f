// Users and tokens as documents in the store. With their hashes: not for people's eyes.
#pragma once

#include <optional>
#include <string>

#include "gateway/people/people.h"

namespace Morquil::Gateway {

std::string ToDocument(const User& user);
std::string ToDocument(const Token& token);

/// Nothing if the text is not what `ToDocument` makes.
std::optional<User> ReadUser(const std::string& document);
std::optional<Token> ReadToken(const std::string& document);

}  // namespace Morquil::Gateway
