// What a command is to change, checked before anything is sent.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command/properties/property.h"

namespace Morquil::Command {

struct Change {
    const Property* property;
    Value value;
};

/// A change that cannot be made, and why.
struct RefusedChange {
    Change change;
    std::string reason;
};

/// Reads names and values in turn; a property without a value has its name alone.
/// Throws: UsageFailure.
std::vector<Change> ParseChanges(const std::vector<std::string>& words);

/// Reads the value of a property that can be set.
/// Throws: UsageFailure.
Change ParseChange(const std::string& name, const std::string& value);

/// The changes that the device does not accept now. One that an earlier change of a mode or a preset may make
/// acceptable is not among them: that the device decides when it gets there.
std::vector<RefusedChange> FindRefused(const std::vector<Change>& changes, const morquil::Device& device);

}  // namespace Morquil::Command
