#pragma once

#include <string>

#include "protocol/table/block.h"
#include "protocol/text/message_to_string.h"

namespace Morquil::Simulator {

/// A whole block in the form in which a device sends it.
template <class Description>
std::string DeviceText(const ChangeSetOf<Description>& set) {
    MessageToString text;
    WriteBlock<Description, Side::Device>(text, set);
    return std::string(text.GetText());
}

/// Whether the device would send only the header of the block.
template <class Description>
bool HoldsNothing(const ChangeSetOf<Description>& set) {
    const std::string text = DeviceText<Description>(set);
    return text.find('\n') == text.find("\n\n");  // the empty line comes right after the header
}

}  // namespace Morquil::Simulator
