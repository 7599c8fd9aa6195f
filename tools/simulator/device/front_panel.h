#pragma once

#include <string>
#include <string_view>

#include "simulator/device/device_state.h"

namespace Morquil::Simulator {

/// The result of a command at the front panel.
struct PanelOutcome {
    /// Why the command was refused, for people; empty if it was carried out.
    std::string refusal;
    /// The text to send to all hosts.
    std::string report;
};

/// Carries out a command of a person at the device's own front panel, given as text:
///     set VIDEO PROC AMP Gain 12
/// Blocks, keys and words are those of the protocol, in any case. A refused command changes nothing.
PanelOutcome UseFrontPanel(DeviceState& state, std::string_view command);

/// Why no device could carry out such a command: it names no block, no key of the block, or no value of the key. Empty
/// if the command is valid.
std::string PanelCommandProblem(std::string_view command);

}  // namespace Morquil::Simulator
