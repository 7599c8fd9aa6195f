#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace Morquil::Simulator {

/// How a device's text is split on its way to a host.
enum class Fragmentation { None, Byte, Random };

/// Faults between a device and its hosts, and in how the device replies. The defaults are free of faults. May be
/// changed while hosts are connected.
struct Faults {
    /// The delay of everything that the device sends.
    std::chrono::milliseconds latency{0};
    Fragmentation fragmentation = Fragmentation::None;
    /// Lines end with carriage return and line feed.
    bool crlf = false;
    /// Neither "ACK" nor "NACK" is sent; blocks are carried out and reported as usual.
    bool neverAcknowledge = false;
    /// Every block of a host is refused and nothing is carried out.
    bool refuseAll = false;
    /// Nothing is sent except the preamble.
    bool silent = false;
    /// Garbage is sent before every block except the preamble.
    bool garbage = false;
    /// Every block except the preamble contains a line far longer than any reader's buffer.
    bool longLines = false;
    /// The latest report is repeated for as long as the host reads.
    bool flood = false;
    /// The device hangs up in the middle of the first block after the preamble.
    bool closeMidBlock = false;
    /// The device hangs up on a host after sending it this many bytes.
    std::optional<std::size_t> dropAfter = std::nullopt;
    /// The same seed gives the same random values.
    std::uint32_t seed = 1;
};

}  // namespace Morquil::Simulator
