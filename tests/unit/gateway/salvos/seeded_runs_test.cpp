// Runs against devices that answer in any order and in any way, compared with what must come of it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "tests/unit/gateway/salvos/salvos_fixture.h"

namespace Morquil::Testing {
namespace {

using Gateway::Json;
using Gateway::OnFailure;
using Gateway::Run;
using Gateway::RunState;
using Gateway::Salvo;
using Gateway::StepResult;
using Values = std::map<std::string, std::map<std::string, Json>>;

class SeededRun {
public:
    explicit SeededRun(unsigned seed) : random_(seed) {
        const int devices = Random(1, 5);
        for (int device = 0; device < devices; ++device) {
            for (int property = 0; property < 4; ++property) {
                world_.fleet.devices["cam-" + std::to_string(device)]["p" + std::to_string(property)] = Random(0, 3);
            }
        }
        before_ = world_.fleet.devices;
        salvo_.onFailure = OnFailure(Random(0, 2));
        for (int step = Random(1, 20); step > 0; --step) {
            salvo_.steps.push_back(
                {"cam-" + std::to_string(Random(0, devices - 1)), "p" + std::to_string(Random(0, 3)), Random(0, 3)});
        }
        world_.salvos->Put(salvo_);
    }

    void Live() {
        const std::string id = world_.salvos->Start("seeded", {.who = "anna"}).run;
        const int lifetime = Random(0, 3) == 0 ? Random(0, 20) : 1000;  // answers until the program ends
        for (int answers = 0; !world_.fleet.requests.empty() && answers < lifetime; ++answers) {
            CheckOneRequestPerDevice();
            AnswerOne();
        }
        const bool isInterrupted = !world_.salvos->FindRun(id)->ended.has_value();
        const std::vector<StepResult> atTheEnd = world_.salvos->FindRun(id)->steps;
        if (isInterrupted) {
            world_.Restart();
        }
        const Run& run = *world_.salvos->FindRun(id);
        isInterrupted ? CheckInterrupted(run, atTheEnd) : CheckFinished(run);
    }

private:
    int Random(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }

    void AnswerOne() {
        const std::size_t at = std::size_t(Random(0, int(world_.fleet.requests.size()) - 1));
        const bool isGood = Random(0, 9) > 0;
        hasFailed_ = hasFailed_ || !isGood;
        world_.fleet.Answer(at, isGood ? FakeFleet::Confirmed(world_.fleet.requests[at].value) : FakeFleet::Refused());
    }
    void CheckOneRequestPerDevice() {
        std::set<std::string> devices;
        for (const FakeFleet::Request& request : world_.fleet.requests) {
            EXPECT_TRUE(devices.insert(request.device).second) << "two steps of one device at the same time";
        }
    }

    /// The values that the devices must have, from the results alone.
    Values Expected(const Run& run) const {
        Values values = before_;
        for (const StepResult& step : run.steps) {
            if (step.outcome == "confirmed" || step.outcome == "roll-back-failed") {
                values[step.device][step.property] = step.value;
            } else if (step.outcome == "same") {
                EXPECT_EQ(values[step.device][step.property], step.value);
            }
        }
        return values;
    }
    void CheckFinished(const Run& run) {
        for (const StepResult& step : run.steps) {
            EXPECT_FALSE(step.outcome.empty() || step.outcome == "sending" || step.outcome == "unknown");
        }
        EXPECT_EQ(run.state == RunState::Done, !hasFailed_);
        if (run.state == RunState::RolledBack) {
            EXPECT_EQ(world_.fleet.devices, before_);
        } else if (run.onFailure != OnFailure::RollBack || run.state == RunState::Done) {
            EXPECT_EQ(world_.fleet.devices, Expected(run));
        }
        CheckSkipped(run);
    }
    void CheckSkipped(const Run& run) {
        const auto isSkipped = [](const StepResult& step) { return step.outcome == "skipped"; };
        const bool hasSkipped = std::any_of(run.steps.begin(), run.steps.end(), isSkipped);
        EXPECT_TRUE(!hasSkipped || (hasFailed_ && run.onFailure != OnFailure::Continue));
        for (std::size_t later = 1; later < run.steps.size(); ++later) {
            for (std::size_t earlier = 0; earlier < later; ++earlier) {
                const bool isSameDevice = run.steps[earlier].device == run.steps[later].device;
                EXPECT_FALSE(isSameDevice && isSkipped(run.steps[earlier]) && !isSkipped(run.steps[later]))
                    << "a step was done after one that was skipped";
            }
        }
    }
    void CheckInterrupted(const Run& run, const std::vector<StepResult>& atTheEnd) {
        EXPECT_EQ(run.state, RunState::Interrupted);
        for (std::size_t i = 0; i < run.steps.size(); ++i) {
            const bool wasDone = !atTheEnd[i].outcome.empty() && atTheEnd[i].outcome != "sending";
            EXPECT_EQ(run.steps[i].outcome, wasDone ? atTheEnd[i].outcome : "unknown");
            EXPECT_EQ(run.steps[i].old, atTheEnd[i].old);
        }
    }

    std::mt19937 random_;
    SalvosWorld world_;
    Salvo salvo_{.name = "seeded", .label = {}, .steps = {}};
    Values before_;
    bool hasFailed_ = false;
};

TEST(SeededRuns, EndAsTheirResultsSay) {
    const char* const seeds = std::getenv("MORQUIL_SEEDS");
    const unsigned count = seeds != nullptr ? unsigned(std::strtoul(seeds, nullptr, 10)) : 1000;
    for (unsigned seed = 1; seed <= count; ++seed) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, "seed " + std::to_string(seed));
        SeededRun(seed).Live();
        if (testing::Test::HasFailure()) {
            return;
        }
    }
}

}  // namespace
}  // namespace Morquil::Testing
