#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "command/changes/local_time.h"
#include "command/properties/property.h"

namespace Morquil::Command {

/// A property that has changed since it was last shown.
struct ValueChange {
    const Property* property = nullptr;
    std::optional<Value> before;      // as last shown
    std::optional<Value> now;         // the latest value
    WallClock::time_point time = {};  // of the latest value
    std::size_t skipped = 0;          // how many values in between are never shown
};

/// Changes that are not shown yet. Holds at most one change per property: a new value replaces the previous one,
/// which is counted.
/// Threads: one at a time.
class ChangeLog {
public:
    /// Records the value of `property` at `time`. Its first value is not a change.
    void Note(const Property& property, const std::optional<Value>& value, WallClock::time_point time);

    bool IsEmpty() const { return changed_.empty(); }
    /// Returns the changes ordered by time, and clears the log.
    std::vector<ValueChange> Take();

private:
    std::map<const Property*, std::optional<Value>> latest_;
    std::map<const Property*, ValueChange> changed_;
};

}  // namespace Morquil::Command
