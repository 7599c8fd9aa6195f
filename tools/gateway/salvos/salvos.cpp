#include "gateway/salvos/salvos.h"

#include <algorithm>

#include "gateway/salvos/active_run.h"

namespace Morquil::Gateway {
namespace {

bool MatchesAny(const std::vector<std::string>& patterns, const std::string& name) {
    return patterns.empty() || std::any_of(patterns.begin(), patterns.end(),
                                           [&](const std::string& pattern) { return MatchesPattern(pattern, name); });
}

bool HasFailed(const StepResult& step) {
    return step.status >= 300;
}

void Refuse(StepResult& step, const SetOutcome& problem) {
    step.outcome = problem.outcome;
    step.status = problem.status;
    step.sentence = problem.sentence;
    step.nearest = problem.nearest;
}

// The program ended in the middle: the documents do not say what became of these steps.
void Interrupt(Run& run, Time now) {
    run.state = RunState::Interrupted;
    run.ended = now;
    for (StepResult& step : run.steps) {
        if (step.outcome.empty() || step.outcome == "sending") {
            step.outcome = "unknown";
        }
    }
}

}  // namespace

Salvos::Salvos(SalvosSettings settings) : settings_(std::move(settings)) {}

Salvos::~Salvos() {
    *isAlive_ = false;
}

// ---- What is stored ----

std::vector<std::string> Salvos::Load(const Documents& salvos, const Documents& runs) {
    std::vector<std::string> unreadable;
    std::string problem;
    for (const auto& [name, text] : salvos) {
        if (std::optional<Salvo> salvo = ReadSalvo(Json::parse(text, nullptr, false), problem)) {
            salvos_.insert_or_assign(name, *std::move(salvo));
        } else {
            unreadable.push_back(name);
        }
    }
    std::vector<Run> found;
    for (const auto& [id, text] : runs) {
        if (std::optional<Run> run = ReadRun(Json::parse(text, nullptr, false))) {
            found.push_back(*std::move(run));
        } else {
            unreadable.push_back(id);
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const Run& a, const Run& b) { return a.started < b.started; });
    for (Run& run : found) {
        TakeRun(std::move(run));
    }
    return unreadable;
}

void Salvos::TakeRun(Run run) {
    const bool wasRunning = run.state == RunState::Running;
    if (wasRunning) {
        Interrupt(run, settings_.now());
    }
    const Run& kept = Keep(std::move(run));
    if (wasRunning) {
        Changed(kept);
    }
}

Run& Salvos::Keep(Run run) {
    order_.push_back(run.id);
    const std::string id = run.id;
    Run& kept = runs_.insert_or_assign(id, std::move(run)).first->second;
    ForgetOldRuns();
    return kept;
}

void Salvos::ForgetOldRuns() {
    for (auto id = order_.begin(); runs_.size() > settings_.mostRuns && id != std::prev(order_.end());) {
        if (active_.contains(*id)) {
            ++id;
            continue;
        }
        settings_.erase(runsCollection, *id);
        runs_.erase(*id);
        id = order_.erase(id);
    }
}

void Salvos::Changed(const Run& run) {
    settings_.changed(run);
    const auto [saving, isNew] = saving_.try_emplace(run.id, false);
    if (isNew) {
        Save(run.id);
    } else {
        saving->second = true;
    }
}

void Salvos::Save(const std::string& id) {
    settings_.put(runsCollection, id, ToJson(runs_.at(id)).dump(), [this, id, isAlive = isAlive_] {
        if (*isAlive) {
            Saved(id);
        }
    });
}

// One text of a run is on its way at a time: a long run does not write all of it again for every step.
void Salvos::Saved(const std::string& id) {
    const bool hasChanged = saving_.at(id);
    if (!hasChanged || !runs_.contains(id)) {
        saving_.erase(id);
        return;
    }
    saving_[id] = false;
    Save(id);
}

// ---- Salvos ----

std::vector<Salvo> Salvos::All() const {
    std::vector<Salvo> all;
    for (const auto& [name, salvo] : salvos_) {
        all.push_back(salvo);
    }
    return all;
}

const Salvo* Salvos::Find(const std::string& name) const {
    const auto found = salvos_.find(name);
    return found != salvos_.end() ? &found->second : nullptr;
}

bool Salvos::Put(Salvo salvo) {
    if (salvos_.size() >= settings_.mostSalvos && !salvos_.contains(salvo.name)) {
        return false;
    }
    settings_.put(salvosCollection, salvo.name, ToJson(salvo).dump(), [] {});
    const std::string name = salvo.name;
    salvos_.insert_or_assign(name, std::move(salvo));
    return true;
}

bool Salvos::Erase(const std::string& name) {
    if (salvos_.erase(name) == 0) {
        return false;
    }
    settings_.erase(salvosCollection, name);
    return true;
}

Salvos::Captured Salvos::Capture(const std::vector<std::string>& devices,
                                 const std::vector<std::string>& patterns) const {
    Captured captured;
    for (const std::string& device : devices) {
        const auto properties = settings_.fleet->Properties(device);
        if (!properties) {
            captured.unknown.push_back(device);
            continue;
        }
        for (const SalvoFleet::Known& known : *properties) {
            if (known.isWritable && !known.value.is_null() && MatchesAny(patterns, known.property)) {
                captured.steps.push_back({device, known.property, known.value});
            }
        }
    }
    return captured;
}

// ---- Runs ----

StartResult Salvos::Start(const std::string& name, const RunOptions& options) {
    const Salvo* const salvo = Find(name);
    if (salvo == nullptr) {
        return {.outcome = StartResult::Outcome::NotFound};
    }
    Run run = Prepare(*salvo, options);
    if (const Run* const earlier = FindRepeated(options.who, options.idempotencyKey)) {
        const bool isSame =
            earlier->salvo == run.salvo && earlier->isDryRun == run.isDryRun && earlier->onFailure == run.onFailure;
        return {.outcome = isSame ? StartResult::Outcome::Repeated : StartResult::Outcome::KeyInUse,
                .run = earlier->id};
    }
    Check(salvo->steps, run);
    const bool hasFailed = std::any_of(run.steps.begin(), run.steps.end(), HasFailed);
    if (hasFailed && !run.isDryRun) {
        return {.outcome = StartResult::Outcome::NotOffered, .steps = std::move(run.steps)};
    }
    if (run.isDryRun) {
        run.state = hasFailed ? RunState::Failed : RunState::Done;
        run.ended = run.started;
    }
    Run& kept = Keep(std::move(run));
    const std::string id = kept.id;
    Changed(kept);
    if (!kept.isDryRun) {
        Activate(kept, false);
    }
    return {.outcome = StartResult::Outcome::Started, .run = id};
}

const Run* Salvos::FindRepeated(const std::string& who, const std::string& idempotencyKey) const {
    if (idempotencyKey.empty()) {
        return nullptr;
    }
    const auto found = std::find_if(runs_.begin(), runs_.end(), [&](const auto& entry) {
        return entry.second.idempotencyKey == idempotencyKey && entry.second.who == who;
    });
    return found != runs_.end() ? &found->second : nullptr;
}

Run Salvos::Prepare(const Salvo& salvo, const RunOptions& options) const {
    Run run{.id = settings_.newId(),
            .salvo = salvo.name,
            .isDryRun = options.isDryRun,
            .onFailure = options.onFailure.value_or(salvo.onFailure),
            .who = options.who,
            .started = settings_.now(),
            .idempotencyKey = options.idempotencyKey,
            .steps = {}};
    for (const Step& step : salvo.steps) {
        run.steps.push_back({.device = step.device,
                             .property = step.property,
                             .old = settings_.fleet->ValueOf(step.device, step.property),
                             .value = step.value});
    }
    return run;
}

void Salvos::Check(const std::vector<Step>& steps, Run& run) const {
    const std::vector<std::optional<SetOutcome>> problems = settings_.fleet->Check(steps);
    for (std::size_t i = 0; i < run.steps.size(); ++i) {
        StepResult& step = run.steps[i];
        if (const std::optional<SetOutcome>& problem = problems.at(i)) {
            Refuse(step, *problem);
        } else if (run.isDryRun) {
            step.outcome = !step.old.is_null() && step.old == step.value ? "same" : "would-set";
            step.status = 200;
        }
    }
}

void Salvos::Activate(Run& run, bool isRollBack) {
    const auto active = std::make_shared<ActiveRun>(run, *settings_.fleet, settings_.now, [this, &run] {
        Changed(run);
        if (run.ended) {
            active_.erase(run.id);
        }
    });
    active_[run.id] = active;
    isRollBack ? active->RollBack() : active->SendAll();
}

const Run* Salvos::FindRun(const std::string& id) const {
    const auto found = runs_.find(id);
    return found != runs_.end() ? &found->second : nullptr;
}

bool Salvos::RollBack(const std::string& id, const std::string& who) {
    const auto found = runs_.find(id);
    if (found == runs_.end()) {
        return false;
    }
    Run& run = found->second;
    if (run.state == RunState::Running || run.state == RunState::RolledBack || run.isDryRun) {
        return false;
    }
    run.state = RunState::Running;
    run.ended.reset();
    run.who = who;
    Changed(run);
    Activate(run, true);
    return true;
}

}  // namespace Morquil::Gateway
