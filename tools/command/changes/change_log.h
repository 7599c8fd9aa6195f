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
    std::optional<Value> before;      // as it was last shown
    std::optional<Value> now;         // the latest
    WallClock::time_point time = {};  // of the latest
    std::size_t skipped = 0;          // how many values came between the two and are shown nowhere
};

/// What has changed and is not shown yet. However much changes, it holds one change per property: the latest value
/// replaces those before it, which are counted.
/// Threads: one at a time.
class ChangeLog {
public:
    /// What `property` holds at `time`. Its first value is no change.
    void Note(const Property& property, const std::optional<Value>& value, WallClock::time_point time);

    bool IsEmpty() const { return changed_.empty(); }
    /// The changes in the order of their times; none of them is left.
    std::vector<ValueChange> Take();

private:
    std::map<const Property*, std::optional<Value>> latest_;
    std::map<const Property*, ValueChange> changed_;
};

}  // namespace Morquil::Command
