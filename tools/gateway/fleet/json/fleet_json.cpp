#include "gateway/fleet/json/fleet_json.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Morquil::Gateway {
namespace {

struct SummaryMember {
    std::string_view name;
    std::string_view property;
};
constexpr std::array summary{SummaryMember{"input", "input.video-mode"},
                             SummaryMember{"output", "output.video-mode"},
                             SummaryMember{"signalPresent", "input.signal-present"},
                             SummaryMember{"referenceLocked", "reference.signal-locked"},
                             SummaryMember{"panelLocked", "device.panel-lock"},
                             SummaryMember{"remoteLocked", "device.remote-lock"}};

Json TimeOrNull(const std::optional<WallTime>& time) {
    return time ? Json(FormatTime(*time)) : Json();
}

Json AgeOrNull(const std::optional<WallTime>& time) {
    return time ? Json(SecondsSince(*time)) : Json();
}

Json ValueOf(const FleetDevice& device, std::string_view name) {
    const Property* const property = Properties::FindProperty(name);
    return device.IsLive() && property != nullptr
               ? Properties::ToJson(property->type, device.Values().At(PositionOf(*property)))
               : Json();
}

Json LatestJson(const std::optional<ValueChange>& change) {
    if (!change) {
        return nullptr;
    }
    return {{"time", FormatTime(change->last.time)},
            {"property", change->property->name},
            {"old", Properties::ToJson(change->property->type, change->oldValue)},
            {"new", Properties::ToJson(change->property->type, change->newValue)},
            {"origin", NameOf(change->last.origin)},
            {"who", change->last.who}};
}

Json StateOf(const FleetDevice& device, const Property& property) {
    const Position position = PositionOf(property);
    const Json value = Properties::ToJson(property.type, device.Values().At(position));
    Json state = {{"value", device.IsLive() ? value : Json()}, {"live", device.IsLive()}};
    if (!device.IsLive()) {
        state["last"] = value;
    }
    state["age"] = AgeOrNull(device.LastReport());
    state["access"] = NameOf(property.Access());
    const LastChange* const last = device.Values().LastChangeAt(position);
    state["changed"] = last != nullptr ? Json(FormatTime(last->time)) : Json();
    state["origin"] = last != nullptr ? Json(NameOf(last->origin)) : Json();
    state["who"] = last != nullptr && !last->who.empty() ? Json(last->who) : Json();
    return state;
}

template <class Make>
Json EachReadable(const PropertyFilter& filter, Make make) {
    Json all = Json::object();
    for (const Property& property : Properties::AllProperties()) {
        if (property.IsReadable() && (!filter || filter(PositionOf(property)))) {
            all.emplace(property.name, make(property));
        }
    }
    return all;
}

}  // namespace

Json LinkJson(const FleetDevice& device) {
    const Link& link = device.Now();
    return {{"state", NameOf(link.state)},
            {"sentence", link.sentence},
            {"since", FormatTime(link.since)},
            {"lastReport", TimeOrNull(device.LastReport())},
            {"age", AgeOrNull(device.LastReport())}};
}

Json SummaryJson(const FleetDevice& device) {
    Json json = Json::object();
    for (const SummaryMember& member : summary) {
        json[std::string(member.name)] = ValueOf(device, member.property);
    }
    return json;
}

bool IsInSummary(const Property& property) {
    return std::any_of(summary.begin(), summary.end(),
                       [&](const SummaryMember& member) { return member.property == property.name; });
}

Json AlarmsJson(const FleetDevice& device) {
    Json alarms = Json::array();
    const LinkState state = device.Now().state;
    if (state != LinkState::Connected && state != LinkState::Disabled && state != LinkState::Connecting) {
        alarms.push_back(device.Now().sentence);
    }
    if (ValueOf(device, "input.signal-present") == false) {
        alarms.push_back("the input has no signal");
    }
    if (ValueOf(device, "device.remote-lock") == true) {
        alarms.push_back("it is locked against remote control");
    }
    if (ValueOf(device, "reference.signal-locked") == false) {
        alarms.push_back("the reference is not locked");
    }
    return alarms;
}

Json DeviceJson(const FleetDevice& device) {
    Json json = EntryJson(device.Entry());
    json["revision"] = device.Revision();
    json["model"] = ValueOf(device, "device.name");
    json["link"] = LinkJson(device);
    json["summary"] = SummaryJson(device);
    json["alarms"] = AlarmsJson(device);
    json["lastChange"] = LatestJson(device.LatestChange());
    return json;
}

Json StateJson(const FleetDevice& device, const Property& property) {
    Json state = StateOf(device, property);
    state["offer"] = Properties::ToJson(property.type, device.Offered(property));
    return state;
}

Json StatesJson(const FleetDevice& device, const PropertyFilter& filter) {
    return EachReadable(filter, [&](const Property& property) { return StateJson(device, property); });
}

Json ValuesJson(const FleetDevice& device, const PropertyFilter& filter) {
    return EachReadable(filter, [&](const Property& property) {
        return device.IsLive() ? Properties::ToJson(property.type, device.Values().At(PositionOf(property))) : Json();
    });
}

Json ChangesJson(std::span<const ValueChange> changes, const PropertyFilter& filter) {
    Json all = Json::object();
    for (const ValueChange& change : changes) {
        if (!filter || filter(PositionOf(*change.property))) {
            all[change.property->name] = {{"value", Properties::ToJson(change.property->type, change.newValue)},
                                          {"old", Properties::ToJson(change.property->type, change.oldValue)},
                                          {"origin", NameOf(change.last.origin)},
                                          {"who", change.last.who}};
        }
    }
    return all;
}

}  // namespace Morquil::Gateway
