#include "gateway/api/fleet_salvos.h"

#include "gateway/api/setting.h"

namespace Morquil::Gateway {
namespace {

// Who may run a salvo was decided before, for all of its steps.
Identity Anybody(const std::string& who) {
    return {.name = who, .role = Role::Admin, .scopes = {Scope{}}};
}

SetOutcome ToOutcome(const WishResult& result) {
    return {.outcome = result.outcome,
            .status = result.status,
            .value = result.members.value("value", Json()),
            .sentence = result.sentence,
            .nearest = result.members.value("nearest", Json())};
}

Json ValueIn(const FleetDevice& device, const Property& property) {
    return device.IsLive() && property.IsReadable()
               ? Morquil::Properties::ToJson(property.type, device.Values().At(PositionOf(property)))
               : Json();
}

}  // namespace

std::optional<std::vector<SalvoFleet::Known>> FleetForSalvos::Properties(const std::string& name) const {
    const FleetDevice* const device = fleet_.Find(name);
    if (device == nullptr) {
        return std::nullopt;
    }
    std::vector<Known> known;
    for (const Property& property : Morquil::Properties::AllProperties()) {
        known.push_back({property.name, ValueIn(*device, property), property.IsWritable()});
    }
    return known;
}

Json FleetForSalvos::ValueOf(const std::string& device, const std::string& property) const {
    const FleetDevice* const found = fleet_.Find(device);
    const Property* const row = Morquil::Properties::FindProperty(property);
    return found != nullptr && row != nullptr ? ValueIn(*found, *row) : Json();
}

std::vector<std::optional<SetOutcome>> FleetForSalvos::Check(const std::vector<Step>& steps) const {
    std::vector<std::optional<SetOutcome>> problems;
    std::vector<CheckedWish> earlier;
    for (const Step& step : steps) {
        CheckedWish checked;
        const auto problem = CheckWish(fleet_, {step.device, step.property, step.value}, Anybody(""), earlier, checked);
        problems.push_back(problem ? std::optional(ToOutcome(*problem)) : std::nullopt);
        if (!problem) {
            earlier.push_back(checked);
        }
    }
    return problems;
}

void FleetForSalvos::Set(const std::string& device, const std::string& property, const Json& value,
                         const std::string& who, std::function<void(SetOutcome)> done) {
    CheckedWish checked;
    if (const auto problem = CheckWish(fleet_, {device, property, value}, Anybody(who), {}, checked)) {
        done(ToOutcome(*problem));
        return;
    }
    Send(checked, who, {}, [done = std::move(done)](const WishResult& result) { done(ToOutcome(result)); });
}

}  // namespace Morquil::Gateway
