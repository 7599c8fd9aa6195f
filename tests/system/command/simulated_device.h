#pragma once

#include <string>

#include "simulator/device/simulated_device.h"
#include "tests/kit/network_device.h"

namespace Morquil::Testing {

/// The simulated device on an address of this machine, for one host after another.
class SimulatedOnNetwork {
public:
    const std::string& Address() const { return network_.Address(); }

    /// An action at the front panel; the host is notified.
    void UsePanel(const std::string& command) {
        std::string text;
        network_.Do([&] {
            EXPECT_EQ(device_.UsePanel(command).refusal, "");
            text = device_.TakeTextFor(host_);
        });
        network_.Send(text);
    }
    bool AwaitHost() { return network_.AwaitHost(); }
    void HangUp() { network_.HangUp(); }

private:
    std::string Greet() {
        device_.Disconnect(host_);
        device_.Connect(++host_);
        return device_.TakeTextFor(host_);
    }
    std::string Answer(std::string_view bytes) {
        device_.Receive(host_, bytes);
        return device_.TakeTextFor(host_);
    }

    Simulator::SimulatedDevice device_{{}};
    Simulator::SimulatedDevice::HostId host_ = 0;
    NetworkDevice network_{
        {.greet = [this] { return Greet(); }, .answer = [this](std::string_view bytes) { return Answer(bytes); }}};
};

}  // namespace Morquil::Testing
