#include "simulator/program/simulation.h"

#include <utility>

namespace Morquil::Simulator {

void Simulation::Connect(HostId host, Moment now) {
    lines_.try_emplace(host, faults_);
    device_.Connect(host);
    SendAll(now);
}

void Simulation::Disconnect(HostId host, Moment /*now*/) {
    device_.Disconnect(host);
    lines_.erase(host);
}

void Simulation::Receive(HostId host, std::string_view bytes, Moment now) {
    // Bring the device's clock up to date before it receives anything.
    Advance(now);
    device_.Receive(host, lines_.at(host).FromHost(bytes));
    SendAll(now);
}

Delivery Simulation::Take(HostId host, Moment now) {
    return lines_.at(host).Take(now);
}

std::optional<Station::Moment> Simulation::NextDelivery(HostId host) const {
    return lines_.at(host).NextDue();
}

void Simulation::Advance(Moment now) {
    device_.Advance(now);
    SendAll(now);
}

PanelOutcome Simulation::UsePanel(std::string_view command, Moment now) {
    Advance(now);
    PanelOutcome outcome = device_.UsePanel(command);
    SendAll(now);
    return outcome;
}

std::string Simulation::LoadSettings(std::string_view text, Moment now) {
    Advance(now);
    std::string error = device_.LoadSettings(text);
    SendAll(now);
    return error;
}

void Simulation::HangUp(Moment now) {
    for (auto& [host, line] : lines_) {
        line.HangUp(now);
    }
}

void Simulation::HangUpMidBlock() {
    for (auto& [host, line] : lines_) {
        line.HangUpMidBlock();
    }
}

void Simulation::SendGarbage(Moment now) {
    for (auto& [host, line] : lines_) {
        line.SendGarbage(now);
    }
}

void Simulation::SendAll(Moment now) {
    for (auto& [host, line] : lines_) {
        line.FromDevice(device_.TakeTextFor(host), now);
    }
}

}  // namespace Morquil::Simulator
