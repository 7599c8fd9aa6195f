// Where a device's text differs from what the library writes for the same values.
#pragma once

#include <string>
#include <string_view>

#include "protocol/message.h"

namespace Morquil::Simulator {

/// The longest line that a device may send, without its line feed.
inline constexpr std::size_t longestLine = 255;

/// Breaks lines that are too long, which only word lists are, into several lines of the same key: readers add the
/// words of all of them.
std::string BreakLongLines(std::string_view text);

/// Rewrites the phases of an AUDIO block: hosts write true or false, devices report 1 or 0.
std::string PhasesAsNumbers(std::string_view text);

/// One line from a host as a device's own reader understands it: phases become numbers, and the keys that devices take
/// but never report vanish. `header` is the header line of the block that the line stands in.
std::string LineFromHost(std::string_view header, std::string_view line);

/// A whole block as the device sends it.
template <class Description>
std::string DeviceText(const ChangeSetOf<Description>& set) {
    return BreakLongLines(PhasesAsNumbers(BlockText<Description>(set)));
}

/// Whether the block is its header and nothing else.
template <class Description>
bool HoldsNothing(const ChangeSetOf<Description>& set) {
    return BlockText<Description>(set) == std::string(Description::block.header.name) + ":\n\n";
}

}  // namespace Morquil::Simulator
