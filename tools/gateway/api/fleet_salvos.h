// The fleet as salvos need it.
#pragma once

#include <chrono>

#include "gateway/fleet/fleet.h"
#include "gateway/salvos/salvo_fleet.h"

namespace Morquil::Gateway {

/// Threads: the context's.
class FleetForSalvos final : public SalvoFleet {
public:
    explicit FleetForSalvos(const Fleet& fleet) : fleet_(fleet) {}

    std::optional<std::vector<Known>> Properties(const std::string& device) const override;
    Json ValueOf(const std::string& device, const std::string& property) const override;
    std::vector<std::optional<SetOutcome>> Check(const std::vector<Step>& steps) const override;
    void Set(const std::string& device, const std::string& property, const Json& value, const std::string& who,
             std::function<void(SetOutcome)> done) override;

private:
    const Fleet& fleet_;
};

}  // namespace Morquil::Gateway
