#include "simulator/device/simulated_device.h"

#include <utility>

#include "simulator/device/host_session.h"
#include "simulator/device/settings_load.h"

namespace Morquil::Simulator {

SimulatedDevice::SimulatedDevice(const DeviceIdentity& identity) : state_(identity) {}

SimulatedDevice::~SimulatedDevice() = default;

void SimulatedDevice::Connect(HostId host) {
    hosts_[host] = Host{std::make_unique<HostSession>(state_), state_.Greeting()};
}

void SimulatedDevice::Disconnect(HostId host) {
    hosts_.erase(host);
}

void SimulatedDevice::Receive(HostId host, std::string_view bytes) {
    const HostSession::Answer answer = hosts_.at(host).session->Receive(bytes);
    for (auto& [id, other] : hosts_) {
        other.unsent += id == host ? answer.toSender : answer.toOthers;
    }
}

PanelOutcome SimulatedDevice::UsePanel(std::string_view command) {
    PanelOutcome outcome = UseFrontPanel(state_, command);
    NotifyAll(outcome.report);
    return outcome;
}

void SimulatedDevice::Advance(std::chrono::milliseconds now) {
    NotifyAll(state_.Advance(now));
}

std::optional<std::chrono::milliseconds> SimulatedDevice::NextDue() const {
    return state_.NextDue();
}

std::string SimulatedDevice::CompleteDump() const {
    return state_.CompleteDump();
}

std::string SimulatedDevice::LoadSettings(std::string_view text) {
    const ChangeOutcome outcome = Simulator::LoadSettings(state_, text);
    NotifyAll(outcome.report);
    return outcome.error;
}

void SimulatedDevice::NotifyAll(std::string_view report) {
    for (auto& [id, host] : hosts_) {
        host.unsent += report;
    }
}

std::string SimulatedDevice::TakeTextFor(HostId host) {
    return std::exchange(hosts_.at(host).unsent, {});
}

}  // namespace Morquil::Simulator
