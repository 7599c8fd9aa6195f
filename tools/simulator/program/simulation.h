#pragma once

#include <map>
#include <string>
#include <string_view>

#include "simulator/device/simulated_device.h"
#include "simulator/faults/faults.h"
#include "simulator/faults/faulty_line.h"
#include "simulator/link/station.h"

namespace Morquil::Simulator {

/// A simulated device and the faulty lines to its hosts.
class Simulation final : public Station {
public:
    Simulation(const DeviceIdentity& identity, const Faults& faults) : device_(identity), faults_(faults) {}

    void Connect(HostId host, Moment now) override;
    void Disconnect(HostId host, Moment now) override;
    void Receive(HostId host, std::string_view bytes, Moment now) override;
    Delivery Take(HostId host, Moment now) override;
    std::optional<Moment> NextDelivery(HostId host) const override;
    bool MustDisconnect(HostId host) const override { return lines_.at(host).IsUnread(); }
    void Advance(Moment now) override;
    std::optional<Moment> NextDue() const override { return device_.NextDue(); }

    /// Carries out a command at the front panel. All hosts are notified of what it changed.
    PanelOutcome UsePanel(std::string_view command, Moment now);
    /// Applies settings, given as blocks of protocol text.
    /// Returns: an empty text, or the first error.
    std::string LoadSettings(std::string_view text, Moment now);

    /// The faults that apply from now on.
    Faults& PresentFaults() { return faults_; }

    // One-time faults, on every line.

    void HangUp(Moment now);
    void HangUpMidBlock();
    void SendGarbage(Moment now);

private:
    void SendAll(Moment now);

    SimulatedDevice device_;
    Faults faults_;
    std::map<HostId, FaultyLine> lines_;
};

}  // namespace Morquil::Simulator
