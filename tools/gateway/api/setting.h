// Setting properties: checked, sent, and judged by what the device makes of it.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "gateway/api/response.h"
#include "gateway/fleet/fleet.h"
#include "gateway/people/people.h"

namespace Morquil::Gateway {

/// Somebody's request to change one property.
struct Wish {
    std::string device;
    std::string property;
    Json value;
};

struct WishTerms {
    bool waits = true;  // until the device has settled it; otherwise only until it is queued
    std::chrono::milliseconds deadline = std::chrono::seconds(5);
};

struct WishResult {
    int status = 200;
    std::string outcome = {};  // "confirmed", "queued", "adjusted", "refused", "not-offered", ...
    std::string sentence = {};
    Json members = Json::object();

    bool IsGood() const { return status < 300; }
    /// {outcome, status, detail, and the members}
    Json ToJson() const;
};

/// A wish that has passed all checks.
struct CheckedWish {
    FleetDevice* device = nullptr;
    const Property* property = nullptr;
    Value value = {};
};

/// Checks a wish before anything is sent. A value whose offer follows from one of `earlier` is not compared with the
/// present offer: what the device accepts will have changed by then.
/// Returns: the problem, if there is one.
std::optional<WishResult> CheckWish(const Fleet& fleet, const Wish& wish, const Identity& identity,
                                    const std::vector<CheckedWish>& earlier, CheckedWish& checked);

/// Sends it, and calls `done` once.
void Send(const CheckedWish& wish, const Who& who, const WishTerms& terms, std::function<void(WishResult)> done);

}  // namespace Morquil::Gateway
