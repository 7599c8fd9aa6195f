// Named sets of changes over several devices, and what a run of one did.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/salvos/json.h"
#include "gateway/store/time.h"

namespace Morquil::Gateway {

struct Step {
    std::string device = {};
    std::string property = {};
    Json value = {};

    bool operator==(const Step&) const = default;
};

/// What a run does when a step fails.
enum class OnFailure {
    Stop,      // starts no further step
    Continue,  // does the other steps
    RollBack,  // starts no further step, and sets what it has changed back, in reverse order
};

struct Salvo {
    std::string name = {};
    std::string label = {};
    std::vector<Step> steps = {};
    OnFailure onFailure = OnFailure::Stop;

    bool operator==(const Salvo&) const = default;
};
inline constexpr std::size_t mostSteps = 1000;

enum class RunState { Running, Done, Failed, RolledBack, Interrupted };

/// A step of a run. `outcome` is empty until the step is started.
///   sending      waits for the device to confirm it
///   same         the device had the value already, so nothing was sent
///   skipped      an earlier step failed
///   confirmed, and whatever else the fleet answers
///   rolled-back, roll-back-failed
///   would-set    in a dry run
///   unknown      the program ended before the outcome was recorded
struct StepResult {
    std::string device = {};
    std::string property = {};
    Json old = {};  // the value before the run; null if it was not known
    Json value = {};
    std::string outcome = {};
    int status = 0;             // as of an HTTP response to the same change
    std::string sentence = {};  // why, if it failed
    Json nearest = {};          // offered values, if the value is not offered

    bool operator==(const StepResult&) const = default;
};

struct Run {
    std::string id = {};
    std::string salvo = {};
    RunState state = RunState::Running;
    bool isDryRun = false;
    OnFailure onFailure = OnFailure::Stop;
    std::string who = {};
    Time started = {};
    std::optional<Time> ended = {};
    std::string idempotencyKey = {};  // empty if there is none
    std::vector<StepResult> steps = {};

    bool operator==(const Run&) const = default;
};

std::string_view NameOf(OnFailure onFailure);
std::string_view NameOf(RunState state);
std::optional<OnFailure> FindOnFailure(std::string_view name);

Json ToJson(const Salvo& salvo);
Json ToJson(const Run& run);
Json StepsJson(const std::vector<Step>& steps);
Json StepsJson(const std::vector<StepResult>& steps);

/// A salvo from what somebody has sent. `problem` says what is wrong with it, by name: "steps[3].device is missing".
std::optional<Salvo> ReadSalvo(const Json& json, std::string& problem);
/// A run from what `ToJson` made.
std::optional<Run> ReadRun(const Json& json);

}  // namespace Morquil::Gateway
