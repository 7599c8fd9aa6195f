#pragma once

#include <string>
#include <string_view>

#include "protocol/text_protocol_parser.h"

namespace Morquil::Simulator {

/// Hands a host's bytes to a parser, line by line, in the wording that a device reads. Any split of the stream gives
/// the same calls.
class HostLines {
public:
    explicit HostLines(TextProtocolParser& parser) : parser_(parser) {}

    void Feed(std::string_view bytes);

private:
    void PassOn(std::string_view line);

    TextProtocolParser& parser_;
    std::string unfinished_;
    std::string header_;  // of the block that the next line stands in; empty between blocks
};

}  // namespace Morquil::Simulator
