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
    DeviceIdentity identity = {};
    Faults faults = {};
    // Files; an empty name stands for none.
    std::string settingsFile = {};
    std::string scriptFile = {};
    std::string recordFile = {};
    std::string replayFile = {};
};

/// The exit status for a wrong command line, or a file that it names and that is of no use.
inline constexpr int usageError = 2;

/// Reads the command line. Without a result the program is to end with `exitStatus`: help or the version was asked for
/// and has been printed (0), or the command line was wrong and it has been said why (`usageError`).
std::optional<Options> ReadOptions(int argumentCount, const char* const* arguments, int& exitStatus);

}  // namespace Morquil::Simulator
