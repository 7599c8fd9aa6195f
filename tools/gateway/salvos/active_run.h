// A run on its way.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "gateway/salvos/salvo.h"
#include "gateway/salvos/salvo_fleet.h"

namespace Morquil::Gateway {

/// Sends the steps of one device one after the other, and those of several devices at the same time.
/// Threads: one, the caller's.
class ActiveRun : public std::enable_shared_from_this<ActiveRun> {
public:
    /// `run` and `fleet` outlive this. `changed` is called after every change of `run`; the last time, `run` has an
    /// end.
    ActiveRun(Run& run, SalvoFleet& fleet, std::function<Time()> now, std::function<void()> changed);

    /// Sends the steps, from the first.
    void SendAll();
    /// Sets what the run has changed back, from the last step.
    void RollBack();

private:
    enum class Phase { Sending, RollingBack };

    /// The steps of a device that are still to be done in this phase, the next one last.
    struct Lane {
        std::vector<std::size_t> steps;
        bool isWaiting = false;  // for the fleet
        bool isPumping = false;  // the fleet answers at once: the loop goes on, rather than a call in a call
    };

    void FillLanes();
    void PumpAll();
    void Pump(Lane& lane);
    void StartStep(Lane& lane, std::size_t step);
    void Send(Lane& lane, std::size_t step, const Json& value);
    void Answered(Lane& lane, std::size_t step, const SetOutcome& outcome);
    void Record(std::size_t step, const SetOutcome& outcome);
    bool MayStart() const;
    bool IsWaiting() const;
    void FinishPhase();
    void SkipTheRest();
    void Finish(RunState state);

    Run& run_;
    SalvoFleet& fleet_;
    std::function<Time()> now_;
    std::function<void()> changed_;
    std::map<std::string, Lane> lanes_;  // by device
    Phase phase_ = Phase::Sending;
    bool hasFailed_ = false;
    bool isStarting_ = false;  // the phase is not over before every device has had its turn
};

}  // namespace Morquil::Gateway
