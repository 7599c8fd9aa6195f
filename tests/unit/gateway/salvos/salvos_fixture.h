// Salvos over a fake fleet, with their documents.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "gateway/salvos/salvos.h"
#include "tests/unit/gateway/salvos/fake_fleet.h"

namespace Morquil::Testing {

struct SalvosWorld {
    SalvosWorld() { Restart(); }

    /// The program ends, perhaps in the middle of a run, and starts again with what is stored.
    void Restart() {
        salvos.reset();
        fleet.requests.clear();
        salvos = std::make_unique<Gateway::Salvos>(Settings());
        const auto list = [this](std::string_view collection) {
            const auto& documents = stored[std::string(collection)];
            return Gateway::Salvos::Documents(documents.begin(), documents.end());
        };
        EXPECT_TRUE(salvos->Load(list(Gateway::salvosCollection), list(Gateway::runsCollection)).empty());
    }
    Gateway::SalvosSettings Settings() {
        return {.fleet = &fleet,
                .put =
                    [this](auto collection, const auto& name, const auto& text, auto written) {
                        stored[std::string(collection)][name] = text;
                        ++writes;
                        if (storesAtOnce) {
                            written();
                        } else {
                            unwritten.push_back(written);
                        }
                    },
                .erase = [this](auto collection, const auto& name) { stored[std::string(collection)].erase(name); },
                .changed = [this](const Gateway::Run& run) { events.push_back(run); },
                .newId = [this] { return "run-" + std::to_string(++ids); },
                .now = [this] { return now += std::chrono::seconds(1); },
                .mostRuns = mostRuns};
    }

    FakeFleet fleet;
    std::map<std::string, std::map<std::string, std::string>> stored;
    std::vector<Gateway::Run> events;
    std::deque<std::function<void()>> unwritten;
    bool storesAtOnce = true;
    int writes = 0;
    int ids = 0;
    std::size_t mostRuns = 100;
    Gateway::Time now = *Gateway::ParseTime("2026-03-01T12:00:00Z");
    std::unique_ptr<Gateway::Salvos> salvos;
};

}  // namespace Morquil::Testing
