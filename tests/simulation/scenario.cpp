#include "tests/simulation/scenario.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "device/device.h"
#include "tests/simulation/host.h"
#include "tests/simulation/mad_device.h"
#include "tests/simulation/model.h"
#include "tests/simulation/simulated_comms.h"
#include "tests/simulation/trace.h"

namespace Morquil::Simulation {

namespace {

/// Longer than anything that a device object waits for.
constexpr Time longTime = 300'000;

class World {
public:
    World(Dice& dice, const std::string& name) : dice_(dice) {
        Scheduler::Instance().Begin(dice, [this, name] {
            trace_.Note("somebody waits for ever");
            std::fprintf(stderr, "%s\ndeadlock in %s\n", trace_.Text().c_str(), name.c_str());
            std::abort();
        });
    }
    ~World() { Scheduler::Instance().End(); }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    Outcome Run() {
        host_.Take(new CMorquilDevice(std::make_unique<SimulatedComms>(device_.wire, device_.manners, model_)));
        if (dice_.OneIn(2)) {
            host_.AddObservers();
        }
        if (device_.IsWild()) {
            model_.ExpectAnything();
        }
        device_.Greet();
        if (!dice_.OneIn(32)) {
            host_.Connect(dice_.OneIn(2));
        }
        for (std::uint32_t steps = 10 + dice_.Below(40); steps > 0; --steps) {
            Step();
        }
        Finish();
        return {trace_.Text(), trace_.Failure()};
    }

private:
    void Step() {
        switch (dice_.Below(8)) {
            case 0:
            case 1:
                device_.SpeakUp();
                break;
            case 2:
                Settle(dice_.Below(dice_.OneIn(4) ? 20'000 : 20));
                break;
            case 3:
                Settle(0);
                break;
            case 4:
                Scheduler::Instance().GiveWay();
                break;
            default:
                if (host_.HasDevice()) {
                    host_.Act();
                }
        }
    }

    void Settle(Time duration) {
        Scheduler& scheduler = Scheduler::Instance();
        scheduler.LetOthersRun(scheduler.Now() + duration);
        const bool deviceReads = scheduler.Now() < device_.manners.readsUntil;
        model_.CheckQuiet(host_.AttemptIsOver(), deviceReads);
        if (host_.HasDevice()) {
            host_.ReadAll();
        }
    }

    void Finish() {
        Scheduler& scheduler = Scheduler::Instance();
        host_.ReleaseDevice();
        scheduler.LetOthersRun(scheduler.Now() + longTime);
        host_.ReleaseDevice();
        scheduler.LetOthersRun(scheduler.Now());
        model_.CheckQuiet(true, false);
        trace_.Require(model_.IsDestroyed(), "the device object outlives its last reference");
        trace_.Require(scheduler.LiveThreads() == 0, "a thread outlives the device object");
        host_.CheckObserversReleased();
    }

    Dice& dice_;
    Trace trace_;
    MadDevice device_{dice_};
    Model model_{trace_, [this](const std::string& block) { device_.Answer(block); }};
    Host host_{dice_, trace_, model_};
};

}  // namespace

Outcome RunScenario(Dice& dice, const std::string& name) {
    return World(dice, name).Run();
}

}  // namespace Morquil::Simulation
