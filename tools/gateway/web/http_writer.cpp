#include "gateway/web/http_writer.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

constexpr std::string_view commonHeaders =
    "X-Content-Type-Options: nosniff\r\n"
    "Referrer-Policy: no-referrer\r\n";
constexpr std::string_view strictPolicy = "Content-Security-Policy: default-src 'none'; frame-ancestors 'none'\r\n";

bool Has(const Response& response, std::string_view name) {
    return std::any_of(response.headers.begin(), response.headers.end(),
                       [&](const auto& header) { return header.first == name; });
}

std::string StatusLine(int status) {
    return "HTTP/1.1 " + std::to_string(status) + " " + std::string(ReasonOf(status)) + "\r\n";
}

/// A value from elsewhere must not begin a new line.
std::string OneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return text;
}

}  // namespace

std::string HeadOf(const Request& request, const Response& response, bool keepsAlive) {
    std::string head = StatusLine(response.status);
    head += "X-Request-Id: " + request.id + "\r\n";
    head += commonHeaders;
    if (!Has(response, "Content-Security-Policy")) {
        head += strictPolicy;
    }
    if (!Has(response, "Cache-Control")) {
        head += "Cache-Control: no-store\r\n";
    }
    if (!response.contentType.empty()) {
        head += "Content-Type: " + response.contentType + "\r\n";
    }
    for (const auto& [name, value] : response.headers) {
        head += name + ": " + OneLine(value) + "\r\n";
    }
    if (!response.source && response.status != 204 && response.status != 304) {
        head += "Content-Length: " + std::to_string(response.body.size() + response.permanent.size()) + "\r\n";
    }
    head += keepsAlive ? "Connection: keep-alive\r\n\r\n" : "Connection: close\r\n\r\n";
    return head;
}

std::string StreamHead(const Request& request) {
    Response response;
    response.contentType = "text/event-stream";
    response.source = [](const std::function<void(std::string)>&) {};
    return HeadOf(request, response, false);
}

}  // namespace Morquil::Gateway
