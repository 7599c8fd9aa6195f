#include "gateway/salvos/salvo.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace Morquil::Gateway {
namespace {

constexpr std::array<std::string_view, 3> onFailureNames{"stop", "continue", "roll-back"};
constexpr std::array<std::string_view, 5> stateNames{"running", "done", "failed", "rolled-back", "interrupted"};

template <class Enumeration>
std::optional<Enumeration> FindIn(std::span<const std::string_view> names, std::string_view name) {
    const auto found = std::find(names.begin(), names.end(), name);
    return found != names.end() ? std::optional(Enumeration(std::distance(names.begin(), found))) : std::nullopt;
}

Json ToJson(const Step& step) {
    return {{"device", step.device}, {"property", step.property}, {"value", step.value}};
}

Json ToJson(const StepResult& step) {
    Json json{{"device", step.device}, {"property", step.property}, {"old", step.old},
              {"value", step.value},   {"outcome", step.outcome},   {"status", step.status}};
    if (!step.sentence.empty()) {
        json["sentence"] = step.sentence;
    }
    if (!step.nearest.is_null()) {
        json["nearest"] = step.nearest;
    }
    return json;
}

template <class Rows>
Json ToArray(const Rows& rows) {
    Json array = Json::array();
    for (const auto& row : rows) {
        array.push_back(ToJson(row));
    }
    return array;
}

std::string TextIn(const Json& json, const char* name) {
    const auto found = json.find(name);
    return found != json.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// As of a device: it is a part of URLs.
bool IsSalvoName(std::string_view name) {
    const auto isPlain = [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9');
    };
    return !name.empty() && name.size() <= 63 && isPlain(name.front()) &&
           std::all_of(name.begin(), name.end(), [&](char letter) { return letter == '-' || isPlain(letter); });
}

// What is wrong with a step; empty if nothing is.
std::string ReadStep(const Json& json, Step& step) {
    if (!json.is_object()) {
        return " is not an object";
    }
    step.device = TextIn(json, "device");
    step.property = TextIn(json, "property");
    if (step.device.empty() || step.property.empty()) {
        return step.device.empty() ? ".device is missing" : ".property is missing";
    }
    const auto value = json.find("value");
    if (value == json.end() || value->is_object() || value->is_array()) {
        return value == json.end() ? ".value is missing" : ".value is not a number, a boolean or a text";
    }
    step.value = *value;
    return {};
}

std::string ReadSteps(const Json& json, std::vector<Step>& steps) {
    if (!json.is_array() || json.empty() || json.size() > mostSteps) {
        return "steps must be a list of 1 to " + std::to_string(mostSteps);
    }
    for (const Json& each : json) {
        const std::string problem = ReadStep(each, steps.emplace_back());
        if (!problem.empty()) {
            return "steps[" + std::to_string(steps.size() - 1) + "]" + problem;
        }
    }
    return {};
}

StepResult ReadResult(const Json& json) {
    return {.device = json.at("device"),
            .property = json.at("property"),
            .old = json.at("old"),
            .value = json.at("value"),
            .outcome = json.at("outcome"),
            .status = json.at("status"),
            .sentence = TextIn(json, "sentence"),
            .nearest = json.value("nearest", Json())};
}

// Throws: Json::exception for whatever `ToJson` does not write.
Run ReadRunOrThrow(const Json& json) {
    Run run{.id = json.at("id"),
            .salvo = json.at("salvo"),
            .state = FindIn<RunState>(stateNames, json.at("state").get<std::string>()).value_or(RunState::Interrupted),
            .isDryRun = json.at("dryRun"),
            .onFailure = FindOnFailure(json.at("onFailure").get<std::string>()).value_or(OnFailure::Stop),
            .who = json.at("who"),
            .started = ParseTime(json.at("started").get<std::string>()).value_or(Time{}),
            .ended = ParseTime(TextIn(json, "ended")),
            .idempotencyKey = TextIn(json, "idempotencyKey"),
            .steps = {}};
    for (const Json& step : json.at("steps")) {
        run.steps.push_back(ReadResult(step));
    }
    return run;
}

}  // namespace

std::string_view NameOf(OnFailure onFailure) {
    return onFailureNames.at(static_cast<std::size_t>(onFailure));
}

std::string_view NameOf(RunState state) {
    return stateNames.at(static_cast<std::size_t>(state));
}

std::optional<OnFailure> FindOnFailure(std::string_view name) {
    return FindIn<OnFailure>(onFailureNames, name);
}

Json StepsJson(const std::vector<Step>& steps) {
    return ToArray(steps);
}

Json StepsJson(const std::vector<StepResult>& steps) {
    return ToArray(steps);
}

Json ToJson(const Salvo& salvo) {
    return {{"name", salvo.name},
            {"label", salvo.label},
            {"onFailure", NameOf(salvo.onFailure)},
            {"steps", ToArray(salvo.steps)}};
}

Json ToJson(const Run& run) {
    Json json{{"id", run.id},
              {"salvo", run.salvo},
              {"state", NameOf(run.state)},
              {"dryRun", run.isDryRun},
              {"onFailure", NameOf(run.onFailure)},
              {"who", run.who},
              {"started", FormatTime(run.started)},
              {"ended", run.ended ? Json(FormatTime(*run.ended)) : Json()}};
    if (!run.idempotencyKey.empty()) {
        json["idempotencyKey"] = run.idempotencyKey;
    }
    json["steps"] = ToArray(run.steps);
    return json;
}

std::optional<Salvo> ReadSalvo(const Json& json, std::string& problem) {
    if (!json.is_object()) {
        problem = "a salvo must be an object";
        return std::nullopt;
    }
    Salvo salvo{.name = TextIn(json, "name"), .label = TextIn(json, "label"), .steps = {}};
    if (!IsSalvoName(salvo.name)) {
        problem = "name must have 1 to 63 letters a to z, digits and -, and must not begin with -";
        return std::nullopt;
    }
    const std::optional<OnFailure> onFailure =
        FindOnFailure(json.contains("onFailure") ? TextIn(json, "onFailure") : "stop");
    if (!onFailure) {
        problem = "onFailure must be stop, continue or roll-back";
        return std::nullopt;
    }
    salvo.onFailure = *onFailure;
    problem = ReadSteps(json.value("steps", Json()), salvo.steps);
    return problem.empty() ? std::optional(std::move(salvo)) : std::nullopt;
}

std::optional<Run> ReadRun(const Json& json) {
    try {
        return ReadRunOrThrow(json);
    } catch (const Json::exception&) {
        return std::nullopt;
    }
}

}  // namespace Morquil::Gateway
