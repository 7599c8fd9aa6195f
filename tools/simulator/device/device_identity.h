#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "protocol/table/value_kinds.h"

namespace Morquil::Simulator {

/// How a device identifies itself. Everything else about it, and what is empty here, is in its factory settings.
struct DeviceIdentity {
    std::string modelName = "Morquil Simulator";
    std::uint32_t softwareVersion = 0x20417;
    std::uint32_t fpgaVersion = 0x1c;
    ProtocolVersion protocolVersion{2, 22};
    bool remoteLock = false;
    std::optional<std::string> friendlyName = std::nullopt;
    std::optional<std::uint32_t> ipAddress = std::nullopt;
    /// How long the device takes to store or show a still frame.
    std::chrono::milliseconds stillFrameTime{300};
};

}  // namespace Morquil::Simulator
