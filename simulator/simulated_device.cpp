#include "simulator/simulated_device.h"

#include <utility>

#include "simulator/host_session.h"

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
    for (auto& [id, host] : hosts_) {
        host.unsent += outcome.report;
    }
    return outcome;
}

std::string SimulatedDevice::TakeTextFor(HostId host) {
    return std::exchange(hosts_.at(host).unsent, {});
}

}  // namespace Morquil::Simulator
