// Devices whose answers a test decides on, and when they come.
#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "gateway/salvos/salvo_fleet.h"

namespace Morquil::Testing {

class FakeFleet final : public Gateway::SalvoFleet {
public:
    using Json = Gateway::Json;

    struct Request {
        std::string device;
        std::string property;
        Json value;
        std::function<void(Gateway::SetOutcome)> done;
    };

    std::map<std::string, std::map<std::string, Json>> devices;
    std::set<std::string> readOnly;
    std::map<std::string, Gateway::SetOutcome> refusals;  // of `Check`, by "device.property"
    std::deque<Request> requests;                         // that have not been answered
    std::vector<std::string> sent;                        // "device.property=value", in order
    bool answersAtOnce = false;

    static Gateway::SetOutcome Confirmed(const Json& value) { return {"confirmed", 200, value}; }
    static Gateway::SetOutcome Refused() { return {"refused", 409, nullptr, "The device refuses it"}; }

    std::optional<std::vector<Known>> Properties(const std::string& device) const override {
        const auto found = devices.find(device);
        if (found == devices.end()) {
            return std::nullopt;
        }
        std::vector<Known> known;
        for (const auto& [property, value] : found->second) {
            known.push_back({property, value, !readOnly.contains(property)});
        }
        return known;
    }
    Json ValueOf(const std::string& device, const std::string& property) const override {
        const auto found = devices.find(device);
        if (found == devices.end() || !found->second.contains(property)) {
            return nullptr;
        }
        return found->second.at(property);
    }
    std::vector<std::optional<Gateway::SetOutcome>> Check(const std::vector<Gateway::Step>& steps) const override {
        std::vector<std::optional<Gateway::SetOutcome>> problems;
        for (const Gateway::Step& step : steps) {
            const auto found = refusals.find(step.device + "." + step.property);
            problems.push_back(found != refusals.end() ? std::optional(found->second) : std::nullopt);
        }
        return problems;
    }
    void Set(const std::string& device, const std::string& property, const Json& value, const std::string& /*who*/,
             std::function<void(Gateway::SetOutcome)> done) override {
        sent.push_back(device + "." + property + "=" + value.dump());
        requests.push_back({device, property, value, std::move(done)});
        if (answersAtOnce) {
            Answer(requests.size() - 1, Confirmed(value));
        }
    }

    /// Answers a request. A confirmed value is then the device's.
    void Answer(std::size_t at, const Gateway::SetOutcome& outcome) {
        const Request request = std::move(requests.at(at));
        requests.erase(requests.begin() + std::ptrdiff_t(at));
        if (outcome.outcome == "confirmed") {
            devices[request.device][request.property] = request.value;
        }
        request.done(outcome);
    }
    void ConfirmAll() {
        while (!requests.empty()) {
            Answer(0, Confirmed(requests.front().value));
        }
    }
};

}  // namespace Morquil::Testing
