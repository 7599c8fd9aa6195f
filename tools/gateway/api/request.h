// A request as the endpoints see it: no socket, no bytes of the protocol.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gateway/people/people.h"

namespace Morquil::Gateway {

struct Request {
    std::string method = "GET";
    std::string target = {};  // as it came: "/api/v1/devices?x=y"
    std::string path = {};    // decoded; what follows is its parts
    std::vector<std::string> segments = {};
    std::vector<std::pair<std::string, std::string>> query = {};
    std::vector<std::pair<std::string, std::string>> headers = {};  // names in lower case
    std::string body = {};
    std::string id = {};       // X-Request-Id
    std::string address = {};  // of the client
    bool isSecure = false;     // came over TLS
    Identity identity = {};

    /// Empty if there is none.
    std::string_view Header(std::string_view lowerCaseName) const;
    /// Nothing if there is none.
    std::optional<std::string_view> Query(std::string_view name) const;
};

/// Splits the target and decodes its parts.
/// Returns: false if it is malformed.
bool ReadTarget(Request& request);

}  // namespace Morquil::Gateway
