#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/device/device_state.h"
#include "simulator/device/front_panel.h"

namespace Morquil::Simulator {

class HostSession;

/// A device and the hosts that are connected to it. Knows no socket: it is told what arrives, and asked what to send.
/// Threads: one at a time.
class SimulatedDevice {
public:
    /// Whoever owns the connections numbers the hosts.
    using HostId = unsigned;

    explicit SimulatedDevice(const DeviceIdentity& identity);
    ~SimulatedDevice();

    /// A host has connected: it is greeted with the complete settings.
    void Connect(HostId host);
    /// A host has gone; what was meant for it is dropped.
    void Disconnect(HostId host);
    /// Bytes of a connected host, split in any way.
    void Receive(HostId host, std::string_view bytes);

    /// A command at the front panel. All hosts are told what it changed.
    PanelOutcome UsePanel(std::string_view command);

    /// Lets what is due happen; all hosts are told. Time is the device's own, since it was switched on; whoever owns
    /// the connections tells it.
    void Advance(std::chrono::milliseconds now);
    /// When `Advance` has something to do next; nothing while nothing is under way.
    std::optional<std::chrono::milliseconds> NextDue() const;

    /// Every block, settings and offers, as one text.
    std::string CompleteDump() const;

    /// Takes over settings, given as blocks of protocol text; all hosts are told.
    /// Returns:   nothing, or the first complaint, which names block and key; then nothing has changed.
    std::string LoadSettings(std::string_view text);

    /// What is to be sent to a connected host now; each text is given once.
    std::string TakeTextFor(HostId host);

private:
    struct Host {
        std::unique_ptr<HostSession> session;
        std::string unsent;
    };

    void TellAll(std::string_view report);

    DeviceState state_;
    std::map<HostId, Host> hosts_;
};

}  // namespace Morquil::Simulator
