// What salvos need of the fleet.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "gateway/salvos/salvo.h"

namespace Morquil::Gateway {

/// How an attempt to set a property ended, or why it was not made.
struct SetOutcome {
    std::string outcome = {};  // see StepResult
    int status = 0;
    Json value = {};  // what the device has now
    std::string sentence = {};
    Json nearest = {};

    bool IsGood() const { return status >= 200 && status < 300; }
};

/// Threads: one, the caller's. Callbacks come on it too, perhaps before `Set` returns.
class SalvoFleet {
public:
    virtual ~SalvoFleet() = default;

    struct Known {
        std::string property;
        Json value;  // null if the device has not reported it
        bool isWritable = false;
    };
    /// All properties of a device in the order of the table; nothing if there is no such device.
    virtual std::optional<std::vector<Known>> Properties(const std::string& device) const = 0;

    /// The present value; null if it is not known.
    virtual Json ValueOf(const std::string& device, const std::string& property) const = 0;

    /// For each step, why the device would not accept the value now; nothing if it would. What a device offers for a
    /// property may follow from an earlier step: such a value need not be offered now.
    virtual std::vector<std::optional<SetOutcome>> Check(const std::vector<Step>& steps) const = 0;

    /// Sets a property and calls `done` once, at the latest after the fleet's deadline.
    virtual void Set(const std::string& device, const std::string& property, const Json& value, const std::string& who,
                     std::function<void(SetOutcome)> done) = 0;
};

}  // namespace Morquil::Gateway
