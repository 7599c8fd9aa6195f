#include "simulator/faults/spoiled_blocks.h"

#include "protocol/text/ascii.h"

namespace Morquil::Simulator {

namespace {

constexpr std::string_view ping = "PING";
constexpr std::string_view unknownLine = "To be refused: yes\n";

}  // namespace

std::string SpoiledBlocks::Pass(std::string_view bytes, bool spoil) {
    std::string passed;
    for (const char byte : bytes) {
        if (byte == '\n') {
            EndLine(passed, spoil);
        } else if (byte != '\r') {
            ++lineLength_;
            if (lineStart_.size() <= ping.size()) {
                lineStart_ += byte;
            }
        }
        passed += byte;
    }
    return passed;
}

void SpoiledBlocks::EndLine(std::string& passed, bool spoil) {
    if (lineLength_ == 0) {
        if (insideBlock_ && spoil) {
            // The empty line's carriage return may already have passed; it does no harm before another line.
            passed += unknownLine;
        }
        insideBlock_ = false;
    } else {
        insideBlock_ = insideBlock_ || !EqualsIgnoringCase(lineStart_, ping);
    }
    lineLength_ = 0;
    lineStart_.clear();
}

}  // namespace Morquil::Simulator
