#include "tests/worlds/simulation/delivery_world.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "device/device.h"
#include "tests/worlds/simulation/delivering_device.h"
#include "tests/worlds/simulation/delivery_host.h"
#include "tests/worlds/simulation/expected_receipts.h"
#include "tests/worlds/simulation/expected_reports.h"
#include "tests/worlds/simulation/simulated_comms.h"

namespace Morquil::Testing::Worlds {
namespace {

/// Longer than a silent device is waited for.
constexpr Time longTime = 30'000;

class DeliveryWorld final : public WireListener {
public:
    DeliveryWorld(Dice& dice, const std::string& name) : dice_(dice) {
        Scheduler::Instance().Begin(dice, [this, name] {
            trace_.Note("a thread waits forever");
            std::fprintf(stderr, "%s\ndeadlock in %s\n", trace_.Text().c_str(), name.c_str());
            std::abort();
        });
    }
    ~DeliveryWorld() override { Scheduler::Instance().End(); }
    DeliveryWorld(const DeliveryWorld&) = delete;
    DeliveryWorld& operator=(const DeliveryWorld&) = delete;

    Outcome Run() {
        device_.Greet();
        host_.Connect(new CMorquilDevice(std::make_unique<SimulatedComms>(device_.wire, device_.manners, *this)));
        Settle(dice_.Below(50));
        for (std::uint32_t steps = 10 + dice_.Below(60); steps > 0; --steps) {
            Step();
        }
        Finish();
        return {trace_.Text(), trace_.Failure()};
    }

private:
    void Step() {
        switch (dice_.Below(8)) {
            case 0:
                return Settle(dice_.Below(dice_.OneIn(4) ? 12'000 : 20));
            case 1:
                return Scheduler::Instance().GiveWay();
            case 2:
                return dice_.OneIn(16) ? device_.HangUp() : device_.Change();
            default:
                host_.HasDevice() ? host_.Act() : static_cast<void>(0);
        }
    }

    /// Until nothing is left to do at this time.
    void Settle(Time duration) {
        Scheduler& scheduler = Scheduler::Instance();
        scheduler.LetOthersRun(scheduler.Now() + duration);
        receipts_.CheckQuiet(!host_.HasEnded());
    }

    void Finish() {
        if (dice_.OneIn(2) && host_.HasDevice()) {
            Settle(longTime);
        }
        if (dice_.OneIn(2) && host_.HasDevice()) {
            host_.Disconnect();
        }
        host_.ReleaseDevice();
        Settle(longTime);
        host_.ReleaseDevice();
        Settle(0);
        trace_.Require(isDestroyed_, "the device object outlives its last reference");
        trace_.Require(Scheduler::Instance().LiveThreads() == 0, "a thread outlives the device object");
        host_.CheckObserversReleased();
    }

    void Received(const DeviceMessage& message) override {
        trace_.Note("received " + message.bytes);
        if (message.kind == DeviceMessage::Kind::Acknowledge) {
            receipts_.Answered(message.bytes == "ACK\n");
        } else if (message.kind == DeviceMessage::Kind::Block) {
            reports_.Received(message.header, message.lines);
            receipts_.Reported(message.header, message.lines);
        }
    }
    void ReadyForMore() override { reports_.CheckDone(); }
    void Sent(const std::string& block) override {
        trace_.Note("sent " + block);
        receipts_.Sent(block);
        reports_.Sent(block);
        device_.Answer(block);
    }
    void Closed() override {
        trace_.Note("closed");
        host_.Ended();
        reports_.Silence();
    }
    void Destroyed() override { isDestroyed_ = true; }

    Dice& dice_;
    Trace trace_;
    Values values_;
    ExpectedReceipts receipts_{trace_};
    ExpectedReports reports_{trace_};
    DeliveringDevice device_{dice_, values_};
    DeliveryHost host_{dice_, trace_, values_, receipts_, reports_};
    bool isDestroyed_ = false;
};

}  // namespace

Outcome RunDeliveryScenario(Dice& dice, const std::string& name) {
    return DeliveryWorld(dice, name).Run();
}

}  // namespace Morquil::Testing::Worlds
