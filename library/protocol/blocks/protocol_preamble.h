#pragma once

#include "protocol/table/block.h"

namespace Morquil {

/// The first block of a conversation: the version of the protocol that the device speaks. Devices only.
struct ProtocolPreambleChangeSet {
    Field<ProtocolVersion> version;

    static constexpr Block block{
        BlockHeader{.name = "PROTOCOL PREAMBLE", .unknownKeyText = "Unknown protocol preamble line \"%s\"\n"},
        Key{"Version", &ProtocolPreambleChangeSet::version, VersionPair{"Failed to parse %s string \"%s\"\n"}}};
};

}  // namespace Morquil
