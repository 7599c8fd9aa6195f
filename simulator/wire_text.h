// Where a device's text differs from what the library writes for the same values.
#pragma once

#include <string>
#include <string_view>

#include "protocol/message.h"
#include "protocol/split_line.h"
#include "simulator/unreported_keys.h"

namespace Morquil::Simulator {

/// The longest line that a device may send, without its line feed.
inline constexpr std::size_t longestLine = 255;

/// Breaks lines that are too long, which only word lists are, into several lines of the same key: readers add the
/// words of all of them.
std::string BreakLongLines(std::string_view text);

/// Rewrites the phases of an AUDIO block: hosts write true or false, devices report 1 or 0.
std::string PhasesAsNumbers(std::string_view text);

/// One line from a host as a device's own reader understands it, without its line feed: phases become numbers. `block`
/// is the name of the block that the line stands in.
std::string LineFromHost(std::string_view block, std::string_view line);

/// Whether the reader passes over the value of such a line in silence although the device cannot take it.
bool IsSilentlyLost(std::string_view block, const KeyAndValue& line);

/// A whole block as the device sends it.
template <class Description>
std::string DeviceText(const ChangeSetOf<Description>& set) {
    const char* const name = Description::block.header.name;
    return BreakLongLines(PhasesAsNumbers(WithoutUnreportedKeys(name, BlockText<Description>(set))));
}

/// Whether the device would send the header of the block and nothing else.
template <class Description>
bool HoldsNothing(const ChangeSetOf<Description>& set) {
    return DeviceText<Description>(set) == std::string(Description::block.header.name) + ":\n\n";
}

}  // namespace Morquil::Simulator
