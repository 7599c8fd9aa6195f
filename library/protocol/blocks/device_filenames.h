#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The names of the device's files.
struct DeviceFilenamesChangeSet {
    /// A host may send one byte more than is kept of a received name.
    static constexpr std::size_t sentNameLimit = 50;

    TextField<sentNameLimit> stillFrameName;

    static constexpr Block block{
        BlockHeader{.name = "DEVICE FILENAMES", .unknownKeyText = "Unknown device filename line \"%s\"\n"},
        Key{"Still frame name", &DeviceFilenamesChangeSet::stillFrameName, Text{}}};
};

using DeviceFilenamesMessage = TextProtocolMessage<DeviceFilenamesChangeSet>;

}  // namespace Morquil
