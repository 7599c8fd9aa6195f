#pragma once

#include <string>
#include <string_view>

#include "simulator/device/device_state.h"

namespace Morquil::Simulator {

/// Applies the settings in `text`, blocks as in a settings file or in a device's complete dump: all or nothing.
/// Commands, offers, keys that a device never reports and the device's identity are ignored. The error names block and
/// key.
ChangeOutcome LoadSettings(DeviceState& device, std::string_view text);

}  // namespace Morquil::Simulator
