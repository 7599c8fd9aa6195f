#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Morquil::Simulator {

/// The devices that a command is for, by number, from the first to the last.
struct Targets {
    unsigned first = 1;
    unsigned last = 1;

    bool operator==(const Targets&) const = default;
};

/// Parsed targets, or why they cannot be parsed; neither if there are none.
struct TargetsReading {
    std::optional<Targets> targets;
    std::string error;
};

/// Removes the targets in front of a command from `rest`: "@7", "@1-10", or "@*" for all of `deviceCount` devices.
TargetsReading TakeTargets(std::string_view& rest, unsigned deviceCount);

/// How to write targets, for people.
std::string TargetsExpected(unsigned deviceCount);

}  // namespace Morquil::Simulator
