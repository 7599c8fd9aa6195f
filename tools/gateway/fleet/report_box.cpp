#include "gateway/fleet/report_box.h"

#include <algorithm>
#include <map>
#include <utility>

namespace Morquil::Gateway {
namespace {

using SetIndex = std::map<morquil::PropertySet, std::vector<Position>>;

SetIndex IndexSets() {
    SetIndex index;
    for (const Property& property : Properties::AllProperties()) {
        if (property.IsReadable()) {
            index[property.set].push_back(PositionOf(property));
        }
    }
    return index;
}

const std::vector<Position>& ReadableIn(morquil::PropertySet set) {
    static const SetIndex index = IndexSets();
    static const std::vector<Position> none;
    const auto found = index.find(set);
    return found == index.end() ? none : found->second;
}

}  // namespace

ReportBox::ReportBox() : known_(Properties::AllProperties().size()) {}

bool ReportBox::AddAll(const morquil::Device& device) {
    const std::lock_guard lock(mutex_);
    const bool wasEmpty = IsEmpty();
    for (const Property& property : Properties::AllProperties()) {
        Look(device, PositionOf(property), false, true);
    }
    return wasEmpty && !IsEmpty();
}

bool ReportBox::Add(const morquil::Device& device, const morquil::Report& report) {
    const std::lock_guard lock(mutex_);
    const bool wasEmpty = IsEmpty();
    if (report.kind == morquil::ReportKind::Availability) {
        auto& offers = content_.offers;
        if (std::find(offers.begin(), offers.end(), report.set) == offers.end()) {
            offers.push_back(report.set);
        }
    }
    for (const Position position : ReadableIn(report.set)) {
        Look(device, position, report.origin == morquil::ReportOrigin::Echo, false);
    }
    return wasEmpty && !IsEmpty();
}

BoxContent ReportBox::Take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(content_, {});
}

void ReportBox::Look(const morquil::Device& device, Position position, bool isEcho, bool isFirst) {
    const Property& property = PropertyAt(position);
    std::optional<Value> value =
        Properties::Exists(property, device) ? Properties::Read(property, device) : std::nullopt;
    if (known_[position] != value) {
        known_[position] = value;
        Keep({position, std::move(value), WallClock::now(), isEcho, isFirst});
    }
}

void ReportBox::Keep(Reading reading) {
    std::vector<Reading>& readings = content_.readings;
    if (readings.size() >= mostReadings) {
        const auto older = std::find_if(readings.rbegin(), readings.rend(),
                                        [&](const Reading& other) { return other.position == reading.position; });
        if (older != readings.rend()) {
            *older = std::move(reading);
            return;
        }
    }
    readings.push_back(std::move(reading));
}

}  // namespace Morquil::Gateway
