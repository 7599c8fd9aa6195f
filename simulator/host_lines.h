#pragma once

#include <map>
#include <string>
#include <string_view>

#include "protocol/text_protocol_parser.h"

namespace Morquil::Simulator {

/// Hands a host's bytes to a parser, line by line, in the wording that a device reads. Any split of the stream gives
/// the same calls. A line that is too long is reported as an error and not kept.
class HostLines {
public:
    explicit HostLines(TextProtocolParser& parser) : parser_(parser) {}

    void Feed(std::string_view bytes);

    /// The values of the keys that devices never report, from the block that is being received: the parser knows
    /// nothing of them.
    const std::map<std::string_view, std::string>& Unreported() const { return unreported_; }

private:
    void TakeLine();
    void TakeHeader();
    void TakeLineOfBlock();
    void PassOn();

    TextProtocolParser& parser_;
    std::string line_;  // the part of the present line that has come
    bool tooLong_ = false;
    std::string header_;  // of the block that the next line stands in; empty between blocks
    std::map<std::string_view, std::string> unreported_;
};

}  // namespace Morquil::Simulator
