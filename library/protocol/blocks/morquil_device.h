#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The device's identity and its locks.
struct MorquilDeviceChangeSet {
    TextField<> modelName;
    Field<std::uint32_t> softwareVersion;
    Field<std::uint32_t> fpgaVersion;
    Field<bool> panelLock;
    Field<bool> remoteLock;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "MORQUIL DEVICE", .unknownKeyText = "Unknown morquil device line \"%s\"\n"},
        Key{"Model name",       &MorquilDeviceChangeSet::modelName,       NonEmptyText{}}.Observed().NotSaved(),
        Key{"Software Version", &MorquilDeviceChangeSet::softwareVersion, HexVersion{}}.Observed().NotSaved(),
        Key{"FPGA Version",     &MorquilDeviceChangeSet::fpgaVersion,     HexVersion{}}.Observed().NotSaved(),
        Key{"Panel lock",       &MorquilDeviceChangeSet::panelLock,       YesNo{}},
        Key{"Remote lock",      &MorquilDeviceChangeSet::remoteLock,      YesNo{}}.Observed()};
    // clang-format on
};

using MorquilDeviceMessage = TextProtocolMessage<MorquilDeviceChangeSet>;

}  // namespace Morquil
