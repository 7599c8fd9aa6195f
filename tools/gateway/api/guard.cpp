#include "gateway/api/guard.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

/// The name without the port.
std::string_view NameIn(std::string_view host) {
    if (host.starts_with('[')) {
        return host.substr(0, std::min(host.find(']'), host.size()));
    }
    return host.substr(0, host.find(':'));
}

bool IsNumeric(std::string_view name) {
    return name.starts_with('[') || (!name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
               return (c >= '0' && c <= '9') || c == '.';
           }));
}

bool IsReading(const Request& request) {
    return request.method == "GET" || request.method == "HEAD";
}

}  // namespace

std::optional<Response> CheckHost(const Request& request, const ServerConfig& server) {
    const std::string_view name = NameIn(request.Header("host"));
    const bool isKnown = name == "localhost" || IsNumeric(name) ||
                         std::find(server.hosts.begin(), server.hosts.end(), name) != server.hosts.end();
    if (isKnown) {
        return std::nullopt;
    }
    return ProblemResponse(request, 421, "unknown-host",
                           "this gateway does not serve that host name; add it to hosts in gateway.toml");
}

std::optional<Response> CheckOrigin(const Request& request) {
    const std::string_view origin = request.Header("origin");
    const std::string own = (request.isSecure ? "https://" : "http://") + std::string(request.Header("host"));
    const bool isStream = !request.Header("upgrade").empty();
    if (origin.empty() || origin == own || (IsReading(request) && !isStream)) {
        return std::nullopt;
    }
    return ProblemResponse(request, 403, "foreign-origin", "requests of pages from elsewhere are refused");
}

std::optional<Response> CheckContentType(const Request& request) {
    const std::string_view type = request.Header("content-type");
    const bool isJson = type == "application/json" || type.starts_with("application/json;");
    if (IsReading(request) || request.body.empty() || isJson) {
        return std::nullopt;
    }
    return ProblemResponse(request, 415, "content-type", "the body has to be application/json");
}

}  // namespace Morquil::Gateway
