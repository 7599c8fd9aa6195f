#include "simulator/blocks/host_text_parser.h"

#include "protocol/block_operations.h"

namespace Morquil::Simulator {

HostTextParser::HostTextParser(IMorquilTextProtocolSink& sink) : parser_(BlockOperationsOf<Side::Device>::all.data()) {
    parser_.SetSink(&sink);
}

void HostTextParser::Feed(std::string_view bytes) {
    for (const char byte : bytes) {
        if (byte == '\n') {
            ProcessLine();
            line_.clear();
            tooLong_ = false;
        } else if (byte != '\r') {
            tooLong_ |= line_.size() == longestLine;
            if (!tooLong_) {
                line_ += byte;
            }
        }
    }
}

void HostTextParser::ProcessLine() {
    if (tooLong_ && !parser_.ExpectsHeader()) {
        parser_.ReportErrorFormatted("Received a line of more than %d characters\n", static_cast<int>(longestLine));
        return;
    }
    if (tooLong_) {
        line_ = "A header that is too long";  // matches no block
    }
    line_ += '\n';
    parser_.Feed(line_.data(), line_.size());
}

}  // namespace Morquil::Simulator
