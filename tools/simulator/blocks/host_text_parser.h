#pragma once

#include <string>
#include <string_view>

#include "protocol/morquil_text_protocol_parser.h"

namespace Morquil::Simulator {

/// Parses what hosts send, as a device does. The calls are the same however the stream is split. A line that is too
/// long is reported as an error and skipped: no part of it counts as a line of its own.
class HostTextParser {
public:
    /// `sink` must outlive the parser.
    explicit HostTextParser(IMorquilTextProtocolSink& sink);

    void Feed(std::string_view bytes);

private:
    void ProcessLine();

    MorquilTextProtocolParser parser_;
    std::string line_;  // the part of the current line received so far
    bool tooLong_ = false;
};

}  // namespace Morquil::Simulator
