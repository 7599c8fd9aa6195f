#include "command/changes/change_log.h"

#include <algorithm>
#include <utility>

namespace Morquil::Command {

void ChangeLog::Note(const Property& property, const std::optional<Value>& value, WallClock::time_point time) {
    const auto [latest, isFirst] = latest_.try_emplace(&property, value);
    if (isFirst || latest->second == value) {
        return;
    }
    const auto [entry, isNew] = changed_.try_emplace(&property, ValueChange{&property, latest->second, {}, {}});
    ValueChange& change = entry->second;
    change.now = value;
    change.time = time;
    change.skipped += isNew ? 0 : 1;
    latest->second = value;
}

std::vector<ValueChange> ChangeLog::Take() {
    std::vector<ValueChange> changes;
    for (auto& [property, change] : std::exchange(changed_, {})) {
        changes.push_back(std::move(change));
    }
    std::stable_sort(changes.begin(), changes.end(),
                     [](const ValueChange& left, const ValueChange& right) { return left.time < right.time; });
    return changes;
}

}  // namespace Morquil::Command
