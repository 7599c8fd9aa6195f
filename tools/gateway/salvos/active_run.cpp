#include "gateway/salvos/active_run.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

// Whether the device may have the run's value now.
bool HasChangedDevice(const StepResult& step) {
    return step.outcome == "confirmed" || step.outcome == "adjusted" || step.outcome == "unconfirmed" ||
           step.outcome == "unknown";
}

}  // namespace

ActiveRun::ActiveRun(Run& run, SalvoFleet& fleet, std::function<Time()> now, std::function<void()> changed)
    : run_(run), fleet_(fleet), now_(std::move(now)), changed_(std::move(changed)) {}

void ActiveRun::SendAll() {
    phase_ = Phase::Sending;
    FillLanes();
    PumpAll();
}

void ActiveRun::RollBack() {
    phase_ = Phase::RollingBack;
    hasFailed_ = false;
    FillLanes();
    PumpAll();
}

void ActiveRun::FillLanes() {
    lanes_.clear();
    for (std::size_t step = 0; step < run_.steps.size(); ++step) {
        if (phase_ == Phase::Sending || HasChangedDevice(run_.steps[step])) {
            lanes_[run_.steps[step].device].steps.push_back(step);
        }
    }
    if (phase_ == Phase::Sending) {
        for (auto& [device, lane] : lanes_) {
            std::reverse(lane.steps.begin(), lane.steps.end());
        }
    }
}

void ActiveRun::PumpAll() {
    const std::shared_ptr<ActiveRun> self = shared_from_this();
    isStarting_ = true;
    for (auto& [device, lane] : lanes_) {
        Pump(lane);
    }
    isStarting_ = false;
    FinishPhase();
}

void ActiveRun::Pump(Lane& lane) {
    if (lane.isPumping) {
        return;
    }
    lane.isPumping = true;
    while (!lane.isWaiting && !lane.steps.empty() && MayStart()) {
        const std::size_t step = lane.steps.back();
        lane.steps.pop_back();
        StartStep(lane, step);
    }
    lane.isPumping = false;
}

// A roll-back goes on after a failure: every value that can be set back is better than one less.
bool ActiveRun::MayStart() const {
    return phase_ == Phase::RollingBack || !hasFailed_ || run_.onFailure == OnFailure::Continue;
}

void ActiveRun::StartStep(Lane& lane, std::size_t step) {
    StepResult& result = run_.steps[step];
    if (phase_ == Phase::RollingBack) {
        if (result.old.is_null()) {
            Answered(lane, step, {.sentence = "Its value before the run was not known"});
        } else {
            Send(lane, step, result.old);
        }
        return;
    }
    result.old = fleet_.ValueOf(result.device, result.property);
    if (!result.old.is_null() && result.old == result.value) {
        Answered(lane, step, {.outcome = "same", .status = 200});
        return;
    }
    result.outcome = "sending";
    changed_();
    Send(lane, step, result.value);
}

void ActiveRun::Send(Lane& lane, std::size_t step, const Json& value) {
    const StepResult& result = run_.steps[step];
    lane.isWaiting = true;
    fleet_.Set(result.device, result.property, value, run_.who,
               [weak = weak_from_this(), &lane, step](const SetOutcome& outcome) {
                   if (const std::shared_ptr<ActiveRun> self = weak.lock()) {
                       self->Answered(lane, step, outcome);
                   }
               });
}

void ActiveRun::Answered(Lane& lane, std::size_t step, const SetOutcome& outcome) {
    lane.isWaiting = false;
    hasFailed_ = hasFailed_ || !outcome.IsGood();
    Record(step, outcome);
    changed_();
    Pump(lane);
    FinishPhase();
}

void ActiveRun::Record(std::size_t step, const SetOutcome& outcome) {
    StepResult& result = run_.steps[step];
    if (phase_ == Phase::RollingBack) {
        result.outcome = outcome.IsGood() ? "rolled-back" : "roll-back-failed";
    } else {
        result.outcome = outcome.outcome;
        result.status = outcome.status;
        result.nearest = outcome.nearest;
    }
    result.sentence = outcome.sentence;
}

bool ActiveRun::IsWaiting() const {
    return std::any_of(lanes_.begin(), lanes_.end(), [&](const auto& entry) {
        const Lane& lane = entry.second;
        return lane.isWaiting || lane.isPumping || (!lane.steps.empty() && MayStart());
    });
}

void ActiveRun::FinishPhase() {
    if (isStarting_ || run_.ended || IsWaiting()) {
        return;
    }
    if (phase_ == Phase::RollingBack) {
        Finish(hasFailed_ ? RunState::Failed : RunState::RolledBack);
        return;
    }
    SkipTheRest();
    if (hasFailed_ && run_.onFailure == OnFailure::RollBack) {
        changed_();
        RollBack();
    } else {
        Finish(hasFailed_ ? RunState::Failed : RunState::Done);
    }
}

void ActiveRun::SkipTheRest() {
    for (const auto& [device, lane] : lanes_) {
        for (const std::size_t step : lane.steps) {
            run_.steps[step].outcome = "skipped";
        }
    }
}

void ActiveRun::Finish(RunState state) {
    run_.state = state;
    run_.ended = now_();
    changed_();
}

}  // namespace Morquil::Gateway
