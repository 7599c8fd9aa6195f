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

/// A device and its connected hosts. Has no socket: the caller passes in what arrives, and requests what is to be sent.
/// Threads: one at a time.
class SimulatedDevice {
public:
    /// Assigned by the owner of the connections.
    using HostId = unsigned;

    explicit SimulatedDevice(const DeviceIdentity& identity);
    ~SimulatedDevice();

    /// A host has connected: it is sent the complete settings.
    void Connect(HostId host);
    /// A host has disconnected; text pending for it is dropped.
    void Disconnect(HostId host);
    /// Bytes from a connected host, split in any way.
    void Receive(HostId host, std::string_view bytes);

    /// Carries out a command at the front panel. All hosts are notified of what it changed.
    PanelOutcome UsePanel(std::string_view command);

    /// Completes what is due and notifies all hosts. `now` is the time since the device was switched on; the owner of
    /// the connections supplies it.
    void Advance(std::chrono::milliseconds now);
    /// When `Advance` has something to do next; nothing if no action is in progress.
    std::optional<std::chrono::milliseconds> NextDue() const;

    /// All blocks, settings and offers, as one text.
    std::string CompleteDump() const;

    /// Applies settings, given as blocks of protocol text; all hosts are notified.
    /// Returns: an empty text, or the first error, which names block and key; then nothing has changed.
    std::string LoadSettings(std::string_view text);

    /// The text to send to a connected host now; each text is returned once.
    std::string TakeTextFor(HostId host);

private:
    struct Host {
        std::unique_ptr<HostSession> session;
        std::string unsent;
    };

    void NotifyAll(std::string_view report);

    DeviceState state_;
    std::map<HostId, Host> hosts_;
};

}  // namespace Morquil::Simulator
