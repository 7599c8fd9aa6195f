#include "gateway/api/setting.h"

#include <algorithm>

#include "properties/suggestion.h"

namespace Morquil::Gateway {
namespace {

using Properties::Refusal;

Json NearestJson(const Property& property, const std::vector<Value>& nearest) {
    Json list = Json::array();
    for (const Value& value : nearest) {
        list.push_back(Properties::ToJson(property.type, value));
    }
    return list;
}

WishResult UnknownDevice(const Fleet& fleet, const std::string& name) {
    const std::string_view nearest = Properties::Nearest(name, fleet.Names());
    return {
        404, "unknown-name",
        "there is no device '" + name + "'" + (nearest.empty() ? "" : "; did you mean '" + std::string(nearest) + "'?"),
        nearest.empty() ? Json::object() : Json{{"suggestion", nearest}}};
}

WishResult UnknownProperty(const std::string& name) {
    const std::string_view nearest = Properties::NearestName(name);
    return {404, "unknown-name",
            "there is no property '" + name + "'" +
                (nearest.empty() ? "" : "; did you mean '" + std::string(nearest) + "'?"),
            nearest.empty() ? Json::object() : Json{{"suggestion", nearest}}};
}

bool IsLocked(const FleetDevice& device) {
    static const Position lock = PositionOf(*Properties::FindProperty("device.remote-lock"));
    return device.IsLive() ? device.Values().At(lock) == Value(true) : device.Now().state == LinkState::RemoteLocked;
}

std::optional<WishResult> CheckLink(const FleetDevice& device) {
    const std::string& name = device.Entry().name;
    const Json members = {{"link", NameOf(device.Now().state)}};
    if (IsLocked(device)) {
        return WishResult{423, "locked", name + " is locked against remote control; unlock it at its front panel",
                          members};
    }
    if (!device.IsLive()) {
        return WishResult{503, "not-connected", name + " is not connected: " + device.Now().sentence, members};
    }
    return std::nullopt;
}

WishResult NotOffered(const FleetDevice& device, const Property& property, const Refusal& refusal) {
    const std::string outcome = refusal.reason == Refusal::Reason::ReadOnly    ? "read-only"
                                : refusal.reason == Refusal::Reason::Malformed ? "malformed-value"
                                                                               : "not-offered";
    return {422,
            outcome,
            property.name + ": " + refusal.text,
            {{"offer", Properties::ToJson(property.type, device.Offered(property))},
             {"nearest", NearestJson(property, refusal.nearest)}}};
}

bool FollowsFrom(const Property& property, const CheckedWish& earlier) {
    const auto& follows = property.offerFollows;
    return std::find(follows.begin(), follows.end(), earlier.property->name) != follows.end();
}

Properties::Checked Parse(const Property& property, const morquil::Device& device, const std::string& text,
                          bool isOfferKnown) {
    if (isOfferKnown || !property.IsWritable()) {
        return Properties::Check(property, device, text);
    }
    return Properties::ParseValue(property.type, text);
}

/// A value that the device has refused: what it accepts instead, as far as it says.
Json NearestTo(const CheckedWish& wish, const std::optional<Value>& now) {
    const auto refusal = Properties::CheckOffered(*wish.property, wish.device->Offered(*wish.property), wish.value);
    if (refusal && !refusal->nearest.empty()) {
        return NearestJson(*wish.property, refusal->nearest);
    }
    return now ? NearestJson(*wish.property, {*now}) : Json::array();
}

WishResult ResultOf(const CheckedWish& wish, const Settled& settled) {
    const Property& property = *wish.property;
    const Json now = Properties::ToJson(property.type, settled.now);
    const Json wanted = Properties::ToJson(property.type, wish.value);
    const std::string name = property.name;
    switch (settled.verdict) {
        case Verdict::Confirmed:
            return {200,
                    "confirmed",
                    {},
                    {{"value", property.IsReadable() ? now : wanted},
                     {"old", Properties::ToJson(property.type, settled.before)},
                     {"revision", wish.device->Revision()}}};
        case Verdict::Adjusted:
            return {409,
                    "adjusted",
                    name + ": the device has made " + now.dump() + " of " + wanted.dump(),
                    {{"value", now}, {"nearest", Json::array({now})}}};
        case Verdict::Refused:
            return {409,
                    "refused",
                    name + ": the device has refused " + wanted.dump(),
                    {{"value", now}, {"nearest", NearestTo(wish, settled.now)}}};
        case Verdict::NotSent:
            return {409, "refused", name + ": changes of this kind are never sent to a device", {{"value", now}}};
        case Verdict::Unconfirmed:
            return {504,
                    "unconfirmed",
                    name + ": the device has not confirmed the change in time; it may still do so",
                    {{"value", now}}};
        case Verdict::TooMany:
            return {503, "too-many", "too many changes of this device are in progress; try again"};
        case Verdict::Lost:
            break;
    }
    return {503, "not-connected", name + ": the connection was lost before the device confirmed the change"};
}

}  // namespace

Json WishResult::ToJson() const {
    Json json = {{"outcome", outcome}, {"status", status}};
    if (!sentence.empty()) {
        json["detail"] = sentence;
    }
    json.update(members);
    return json;
}

std::optional<WishResult> CheckWish(const Fleet& fleet, const Wish& wish, const Identity& identity,
                                    const std::vector<CheckedWish>& earlier, CheckedWish& checked) {
    checked.device = fleet.Find(wish.device);
    if (checked.device == nullptr) {
        return UnknownDevice(fleet, wish.device);
    }
    checked.property = Properties::FindProperty(wish.property);
    if (checked.property == nullptr) {
        return UnknownProperty(wish.property);
    }
    const Property& property = *checked.property;
    if (!May(identity.role, Right::SetProperty) || !Covers(identity.scopes, wish.device, property.name)) {
        return WishResult{403, "forbidden",
                          "your role or scope does not allow setting " + property.name + " of " + wish.device};
    }
    if (auto problem = CheckLink(*checked.device)) {
        return problem;
    }
    const bool isOfferKnown = std::none_of(earlier.begin(), earlier.end(), [&](const CheckedWish& one) {
        return one.device == checked.device && FollowsFrom(property, one);
    });
    const std::string text = wish.value.is_null() ? std::string() : Properties::TextOf(wish.value);
    const Properties::Checked parsed = Parse(property, *checked.device->Connection().Device(), text, isOfferKnown);
    if (const Refusal* const refusal = std::get_if<Refusal>(&parsed)) {
        return NotOffered(*checked.device, property, *refusal);
    }
    checked.value = std::get<Value>(parsed);
    return std::nullopt;
}

void Send(const CheckedWish& wish, const Who& who, const WishTerms& terms, std::function<void(WishResult)> done) {
    if (terms.waits) {
        wish.device->Set(*wish.property, wish.value, who, terms.deadline,
                         [wish, done = std::move(done)](const Settled& settled) { done(ResultOf(wish, settled)); });
        return;
    }
    const auto early = std::make_shared<std::optional<WishResult>>();
    wish.device->Set(*wish.property, wish.value, who, terms.deadline,
                     [wish, early](const Settled& settled) { *early = ResultOf(wish, settled); });
    done(early->value_or(
        WishResult{202, "queued", {}, {{"value", Properties::ToJson(wish.property->type, wish.value)}}}));
}

}  // namespace Morquil::Gateway
