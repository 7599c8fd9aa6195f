#include "gateway/api/authenticate.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

constexpr std::string_view bearer = "Bearer ";

Response Unauthorized(const Request& request, std::string detail) {
    Response response = ProblemResponse(request, 401, "not-signed-in", std::move(detail));
    response.headers.emplace_back("WWW-Authenticate", "Bearer");
    return response;
}

std::string_view Trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

}  // namespace

std::string_view SessionIn(const Request& request) {
    std::string_view cookies = request.Header("cookie");
    while (!cookies.empty()) {
        const std::size_t end = std::min(cookies.find(';'), cookies.size());
        const std::string_view cookie = Trimmed(cookies.substr(0, end));
        if (cookie.starts_with(sessionCookie) && cookie.substr(sessionCookie.size()).starts_with('=')) {
            return cookie.substr(sessionCookie.size() + 1);
        }
        cookies.remove_prefix(std::min(end + 1, cookies.size()));
    }
    return {};
}

std::optional<Response> Authenticate(People& people, Request& request) {
    const std::string_view authorization = request.Header("authorization");
    if (!authorization.empty()) {
        // A token that proves nothing is refused even where none is needed: its owner relies on it.
        const auto identity = authorization.starts_with(bearer)
                                  ? people.FromToken(Trimmed(authorization.substr(bearer.size())))
                                  : std::optional<Identity>();
        if (!identity) {
            return Unauthorized(request, "the token is unknown, revoked or expired");
        }
        request.identity = *identity;
        return std::nullopt;
    }
    if (const auto identity = people.FromSession(SessionIn(request))) {
        request.identity = *identity;
        return std::nullopt;
    }
    if (people.IsOpen()) {
        request.identity = {.role = Role::Admin, .scopes = {Scope{}}};
        return std::nullopt;
    }
    return Unauthorized(request, "sign in, or send a token");
}

}  // namespace Morquil::Gateway
