#include "tests/worlds/simulation/scenario.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "device/device.h"
#include "tests/worlds/simulation/erratic_device.h"
#include "tests/worlds/simulation/host.h"
#include "tests/worlds/simulation/model.h"
#include "tests/worlds/simulation/simulated_comms.h"
#include "tests/worlds/simulation/trace.h"

namespace Morquil::Testing::Worlds {

namespace {

/// Longer than anything that a device object waits for.
constexpr Time longTime = 300'000;

/// At most this many device objects connect to one device that comes and goes.
constexpr std::size_t mostLives = 6;
/// Numbers for the observers of one life.
constexpr std::size_t observersOfALife = 10;

/// A device object's life: its one connection, its host, and what is known of both.
struct Life {
    Life(Dice& dice, Trace& trace, std::size_t number, bool deviceIsThere, std::function<void()> onDisconnected)
        : device(dice, deviceIsThere),
          model(trace, [this](const std::string& block) { device.Answer(block); }),
          host(dice, trace, model, number * observersOfALife, std::move(onDisconnected)) {
        host.Take(new CMorquilDevice(std::make_unique<SimulatedComms>(device.wire, device.manners, model)));
        if (dice.OneIn(2)) {
            host.AddObservers();
        }
        if (device.IsWild()) {
            model.ExpectAnything();
        }
        device.Greet();
    }

    void CheckQuiet() {
        model.CheckQuiet(host.AttemptIsOver(), Scheduler::Instance().Now() < device.manners.readsUntil);
        if (host.HasDevice()) {
            host.ReadAll();
        }
    }

    ErraticDevice device;
    Model model;
    Host host;
};

class World {
public:
    World(Dice& dice, const std::string& name) : dice_(dice), flaps_(dice.OneIn(4)) {
        lives_.reserve(mostLives);
        Scheduler::Instance().Begin(dice, [this, name] {
            trace_.Note("a thread waits forever");
            std::fprintf(stderr, "%s\ndeadlock in %s\n", trace_.Text().c_str(), name.c_str());
            std::abort();
        });
    }
    ~World() { Scheduler::Instance().End(); }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    Outcome Run() {
        Life& first = Begin();
        if (!dice_.OneIn(32)) {
            first.host.Connect(dice_.OneIn(2));
        }
        for (std::uint32_t steps = 10 + dice_.Below(40); steps > 0; --steps) {
            Step();
        }
        Finish();
        return {trace_.Text(), trace_.Failure()};
    }

private:
    Life& Begin() {
        trace_.Note("life " + std::to_string(lives_.size()) + " begins");
        lives_.push_back(std::make_unique<Life>(dice_, trace_, lives_.size(), deviceIsThere_, [this] {
            // Inside a callback waiting for a connection is not allowed.
            if (dice_.OneIn(2)) {
                Reconnect(true);
            }
        }));
        return *lives_.back();
    }

    /// One life is one connection: connecting again uses a new object. The old one may still exist.
    void Reconnect(bool isAsynchronous) {
        if (flaps_ && !isFinishing_ && lives_.size() < mostLives) {
            Begin().host.Connect(isAsynchronous);
        }
    }

    void Step() {
        const auto lives = static_cast<std::uint32_t>(lives_.size());
        Life& life = *lives_[lives > 1 && dice_.OneIn(2) ? dice_.Below(lives) : lives - 1];
        switch (dice_.Below(flaps_ ? 9 : 8)) {
            case 0:
            case 1:
                life.device.ActUnprompted();
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
            case 8:
                Flap();
                break;
            default:
                if (life.host.HasDevice()) {
                    life.host.Act();
                }
        }
    }

    /// The device appears or disappears, or the host reconnects whether it is there or not.
    void Flap() {
        if (dice_.OneIn(2)) {
            return Reconnect(dice_.OneIn(2));
        }
        deviceIsThere_ = !deviceIsThere_;
        trace_.Note(deviceIsThere_ ? "the device comes" : "the device goes");
        for (const std::unique_ptr<Life>& life : lives_) {
            life->device.Leave();
        }
    }

    void Settle(Time duration) {
        Scheduler& scheduler = Scheduler::Instance();
        scheduler.LetOthersRun(scheduler.Now() + duration);
        for (const std::unique_ptr<Life>& life : lives_) {
            life->CheckQuiet();
        }
    }

    void ReleaseAll() {
        for (const std::unique_ptr<Life>& life : lives_) {
            life->host.ReleaseDevice();
        }
    }

    void Finish() {
        isFinishing_ = true;
        Scheduler& scheduler = Scheduler::Instance();
        ReleaseAll();
        scheduler.LetOthersRun(scheduler.Now() + longTime);
        ReleaseAll();
        scheduler.LetOthersRun(scheduler.Now());
        for (const std::unique_ptr<Life>& life : lives_) {
            life->model.CheckQuiet(true, false);
            trace_.Require(life->model.IsDestroyed(), "the device object outlives its last reference");
            life->host.CheckObserversReleased();
        }
        trace_.Require(scheduler.LiveThreads() == 0, "a thread outlives the device object");
    }

    Dice& dice_;
    const bool flaps_;
    bool deviceIsThere_ = true;
    bool isFinishing_ = false;
    Trace trace_;
    std::vector<std::unique_ptr<Life>> lives_;
};

}  // namespace

Outcome RunScenario(Dice& dice, const std::string& name) {
    return World(dice, name).Run();
}

}  // namespace Morquil::Testing::Worlds
