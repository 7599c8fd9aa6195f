#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "protocol/table/value_kinds.h"

namespace Morquil::Simulator {

/// What a device says about itself. Everything else about it is in its factory settings.
struct DeviceIdentity {
    std::string modelName = "Morquil Simulator";
    std::uint32_t softwareVersion = 0x20417;
    std::uint32_t fpgaVersion = 0x1c;
    ProtocolVersion protocolVersion{2, 22};
    bool remoteLock = false;
    /// How long the device takes to store a still frame, or to show one.
    std::chrono::milliseconds stillFrameTime{300};
};

}  // namespace Morquil::Simulator
