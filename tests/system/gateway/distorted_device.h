// A simulated device whose answers a test changes.
#pragma once

#include <functional>
#include <string>

#include "simulator/device/simulated_device.h"
#include "tests/kit/network_device.h"

namespace Morquil::Testing {

class DistortedDevice {
public:
    /// What is sent in place of the device's own text.
    using Distortion = std::function<std::string(const std::string& text)>;

    explicit DistortedDevice(Distortion greeting = {}) : greeting_(std::move(greeting)) {}

    /// Distorts all answers from now on.
    void Misbehave(Distortion answer) {
        network_.Do([&] { answer_ = std::move(answer); });
    }

    const std::string& Address() const { return network_.Address(); }
    void UsePanel(const std::string& command) {
        std::string text;
        network_.Do([&] {
            device_.UsePanel(command);
            text = device_.TakeTextFor(host_);
        });
        network_.Send(text);
    }
    void HangUp() { network_.HangUp(); }
    bool AwaitHost() { return network_.AwaitHost(); }

    static std::string Silence(const std::string&) { return {}; }
    static std::string Refuse(const std::string& text) {
        return text.find("ACK\n\n") != std::string::npos ? "NACK\n\n" : text;
    }

private:
    static std::string Distort(const Distortion& distortion, const std::string& text) {
        return distortion ? distortion(text) : text;
    }
    std::string Greet() {
        device_.Disconnect(host_);
        device_.Connect(++host_);
        return Distort(greeting_, device_.TakeTextFor(host_));
    }
    std::string Answer(std::string_view bytes) {
        device_.Receive(host_, bytes);
        return Distort(answer_, device_.TakeTextFor(host_));
    }

    Distortion greeting_;
    Distortion answer_;
    Simulator::SimulatedDevice device_{{}};
    Simulator::SimulatedDevice::HostId host_ = 0;
    NetworkDevice network_{
        {.greet = [this] { return Greet(); }, .answer = [this](std::string_view bytes) { return Answer(bytes); }}};
};

}  // namespace Morquil::Testing
