#pragma once

#include <string>
#include <string_view>

#include "protocol/morquil_text_protocol_parser.h"

namespace Morquil::Simulator {

/// Reads as a device does what hosts send. Any split of the stream gives the same calls. A line that is too long is
/// reported as an error and not read: no part of it counts as a line of its own.
class HostTextParser {
public:
    /// `sink` outlives the parser.
    explicit HostTextParser(IMorquilTextProtocolSink& sink);

    void Feed(std::string_view bytes);

private:
    void TakeLine();

    MorquilTextProtocolParser parser_;
    std::string line_;  // the part of the present line that has come
    bool tooLong_ = false;
};

}  // namespace Morquil::Simulator
