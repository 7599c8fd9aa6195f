// Signing in and out.
#include "gateway/api/authenticate.h"
#include "gateway/api/people_endpoints.h"

namespace Morquil::Gateway {
namespace {

// Without Max-Age: it ends with the browser, and earlier at the gateway.
std::string Cookie(const Request& request, const std::string& session) {
    return std::string(sessionCookie) + "=" + session + "; Path=/; HttpOnly; SameSite=Strict" +
           (request.isSecure ? "; Secure" : "");
}

Response WithCookie(const Request& request, const std::string& cookie) {
    Response response = NoContent();
    response.headers.emplace_back("Set-Cookie", Cookie(request, cookie));
    return response;
}

Response Forget(const Request& request) {
    Response response = WithCookie(request, "");
    response.headers.back().second += "; Max-Age=0";
    return response;
}

Response ResponseTo(const Request& request, const SignInResult& result) {
    using Outcome = SignInResult::Outcome;
    if (result.outcome == Outcome::SignedIn) {
        return WithCookie(request, result.session);
    }
    if (result.outcome == Outcome::Wrong) {
        return ProblemResponse(request, 401, "wrong-password", "the user or the password is wrong");
    }
    const bool isBusy = result.outcome == Outcome::Busy;
    const std::string seconds = isBusy ? "2" : std::to_string(result.retryAfter.count());
    Response response = isBusy
                            ? ProblemResponse(request, 503, "busy", "too many passwords are being checked; try again")
                            : ProblemResponse(request, 429, "too-many-attempts",
                                              "too many attempts to sign in; try again in " + seconds + " seconds");
    response.headers.emplace_back("Retry-After", seconds);
    return response;
}

}  // namespace

void SignIn(Services& services, const SharedRequest& request, const Reply& reply) {
    const std::optional<Json> body = ReadBody(*request, reply);
    if (!body) {
        return;
    }
    const auto isText = [&](const char* member) {
        return body->is_object() && body->contains(member) && (*body)[member].is_string();
    };
    if (!isText("user") || !isText("password")) {
        reply(ProblemResponse(*request, 400, "malformed-json", "expected {\"user\": ..., \"password\": ...}"));
        return;
    }
    services.people.SignIn((*body)["user"], (*body)["password"], request->address,
                           [request, reply](const SignInResult& result) { reply(ResponseTo(*request, result)); });
}

void SignOut(Services& services, const SharedRequest& request, const Reply& reply) {
    services.people.SignOut(SessionIn(*request));
    reply(Forget(*request));
}

void SignOutEverywhere(Services& services, const SharedRequest& request, const Reply& reply) {
    if (request->identity.kind == Identity::Kind::Password) {
        services.people.SignOutEverywhere(request->identity.name);
    }
    reply(Forget(*request));
}

}  // namespace Morquil::Gateway
