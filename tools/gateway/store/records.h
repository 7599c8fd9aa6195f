// What the database keeps of the past.
#pragma once

#include <cstdint>
#include <string>

#include "gateway/store/time.h"

namespace Morquil::Gateway {

/// A property has changed.
struct Change {
    std::int64_t id = 0;  // given by the store; always larger than those of earlier changes
    Time time = {};
    std::string device = {};
    std::string property = {};
    std::string oldValue = "null";  // JSON
    std::string newValue = "null";
    std::string origin = {};  // what caused it: the front panel, another host, the gateway
    std::string who = {};     // the user or token; empty if no request here caused it

    bool operator==(const Change&) const = default;
};

/// Somebody has tried to change something.
struct Attempt {
    std::int64_t id = 0;  // given by the store, without gaps
    Time time = {};
    std::string who = {};
    std::string address = {};  // where the request came from
    std::string device = {};
    std::string property = {};
    std::string value = "null";  // JSON
    std::string outcome = {};    // "confirmed", "refused", ...
    int status = 0;              // of the HTTP response
    std::string requestId = {};
    std::string hash = {};  // given by the store, in hexadecimal; covers this row and the previous row's hash

    bool operator==(const Attempt&) const = default;
};

}  // namespace Morquil::Gateway
