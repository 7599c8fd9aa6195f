#pragma once

#include <string>
#include <string_view>

#include "simulator/device/device_state.h"

namespace Morquil::Simulator {

/// What came of a command at the front panel.
struct PanelOutcome {
    /// Why the command was refused, for people; empty when it was carried out.
    std::string refusal;
    /// What all hosts are told.
    std::string report;
};

/// Somebody at the device's own front panel, who writes what he does:
///     set VIDEO PROC AMP Gain 12
/// Blocks, keys and words are those of the protocol, in any case. Nothing changes when a command is refused.
PanelOutcome UseFrontPanel(DeviceState& state, std::string_view command);

/// Why no device could carry out such a command: it names no block, no key of the block, or no value of the key. Empty
/// when there is nothing to say against it.
std::string PanelCommandProblem(std::string_view command);

}  // namespace Morquil::Simulator
