#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/device/device_state.h"
#include "simulator/faults/faults.h"

namespace Morquil::Simulator {

struct Options {
    std::string address = "127.0.0.1";
    std::uint16_t port = 9800;
    /// How many devices there are, each at its own address; without a number, commands name no devices. Several devices
    /// can neither record nor replay.
    std::optional<std::uint32_t> devices = std::nullopt;
    DeviceIdentity identity = {};
    Faults faults = {};
    // Files; an empty name means none.
    std::string settingsFile = {};
    std::string scriptFile = {};
    std::string recordFile = {};
    std::string replayFile = {};

    unsigned DeviceCount() const { return devices.value_or(1); }
};

/// The exit status for a wrong command line, or an unusable file that it names.
inline constexpr int usageError = 2;

/// Parses the command line. If the result is empty, the program must end with `exitStatus`: 0 if help or the version
/// was printed, `usageError` if the command line was wrong and the reason was printed.
std::optional<Options> ReadOptions(int argumentCount, const char* const* arguments, int& exitStatus);

}  // namespace Morquil::Simulator
