#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/device_state.h"

namespace Morquil::Simulator {

struct Options {
    std::string address = "127.0.0.1";
    std::uint16_t port = 9800;
    DeviceIdentity identity;
};

/// Reads the command line. Without a result the program is to end with `exitStatus`: help or the version was asked for
/// and has been printed (0), or the command line was wrong and it has been said why (2).
std::optional<Options> ReadOptions(int argumentCount, char** arguments, int& exitStatus);

}  // namespace Morquil::Simulator
