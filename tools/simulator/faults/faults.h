#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace Morquil::Simulator {

/// Into which pieces a device's text is cut on its way to a host.
enum class Fragmentation { None, Byte, Random };

/// What goes wrong between a device and its hosts, and how the device says what it says. As it stands nothing is odd.
/// May be changed while hosts are connected.
struct Faults {
    /// How long everything that the device says is on its way.
    std::chrono::milliseconds latency{0};
    Fragmentation fragmentation = Fragmentation::None;
    /// Lines end with carriage return and line feed.
    bool crlf = false;
    /// Neither "ACK" nor "NACK" is ever said; blocks are carried out and reported as always.
    bool neverAcknowledge = false;
    /// Every block of a host is refused and nothing is carried out.
    bool refuseAll = false;
    /// Nothing is said but the preamble.
    bool silent = false;
    /// There is nonsense in front of every block but the preamble.
    bool garbage = false;
    /// A line far longer than any reader's buffer stands in every block but the preamble.
    bool longLines = false;
    /// The latest report is repeated for as long as the host reads.
    bool flood = false;
    /// The device hangs up in the middle of the first block behind the preamble.
    bool closeMidBlock = false;
    /// The device hangs up on a host when it has sent it this many bytes.
    std::optional<std::size_t> dropAfter = std::nullopt;
    /// What is random is the same again with the same seed.
    std::uint32_t seed = 1;
};

}  // namespace Morquil::Simulator
