// What can be done with a block that is known only by its place in the table.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace Morquil {

class TextProtocolMessageBase;

/// A change set of any block, and the block's place in the table, counted from 0.
struct AnyBlock {
    std::size_t place;
    const void* changeSet;
};

/// The protocol text of a block of settings.
std::string BlockText(AnyBlock block);

/// A message with the content of a block that is played back from settings files, less what would not fit into its
/// line.
std::unique_ptr<TextProtocolMessageBase> MakeMessage(AnyBlock block);

/// A message without any field, which requests what a device offers.
std::unique_ptr<TextProtocolMessageBase> MakeRequest(std::size_t place);

}  // namespace Morquil
