// What an endpoint answers.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "properties/json/property_json.h"

namespace Morquil::Gateway {

using Json = Properties::Json;

struct Request;
class Subscriber;

/// Makes a body piece by piece: calls the function it is given with the next piece, or with an empty one at the end.
using BodySource = std::function<void(std::function<void(std::string)>)>;

struct Response {
    int status = 200;
    std::string contentType = "application/json";
    std::vector<std::pair<std::string, std::string>> headers = {};
    std::string body = {};
    /// Bytes that are never freed, such as the panel's, in place of `body`.
    std::string_view permanent = {};
    /// If set, the body follows piece by piece.
    BodySource source = {};
};

/// Called once, on the context's thread, possibly after the endpoint has returned.
using Reply = std::function<void(Response)>;

std::string DumpJson(const Json& json);
Response JsonResponse(int status, const Json& json);
Response NoContent();

/// A problem as RFC 9457 describes it. `kind`: "not-offered", from which its type and title follow.
/// `members`: what else a program may want to know.
Response ProblemResponse(const Request& request, int status, std::string_view kind, std::string detail,
                         Json members = Json::object());

/// "Not Found" for 404.
std::string_view ReasonOf(int status);

}  // namespace Morquil::Gateway
