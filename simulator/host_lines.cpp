#include "simulator/host_lines.h"

#include <utility>

#include "protocol/ascii.h"
#include "simulator/unreported_keys.h"
#include "simulator/wire_text.h"

namespace Morquil::Simulator {

namespace {

std::string_view WithoutColon(std::string_view header) {
    return header.ends_with(':') ? header.substr(0, header.size() - 1) : header;
}

/// A line of its own, with no block behind it.
bool IsShortMessage(std::string_view line) {
    const std::string_view word = WithoutColon(line);
    return EqualsIgnoringCase(word, "PING") || EqualsIgnoringCase(word, "ACK") || EqualsIgnoringCase(word, "NACK");
}

}  // namespace

void HostLines::Feed(std::string_view bytes) {
    for (const char byte : bytes) {
        if (byte == '\n') {
            TakeLine();
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

void HostLines::TakeLine() {
    if (line_.empty()) {
        header_.clear();
        PassOn();
    } else if (header_.empty()) {
        TakeHeader();
    } else {
        TakeLineOfBlock();
    }
}

void HostLines::TakeHeader() {
    unreported_.clear();
    if (tooLong_) {
        line_ = "A header that is too long";  // which names no block
    }
    const std::string_view text = UpToZero(line_);
    if (!IsShortMessage(text)) {
        header_ = WithoutColon(text);
        if (header_.empty()) {
            header_ = "?";  // no name is a header all the same
        }
    }
    PassOn();
}

void HostLines::TakeLineOfBlock() {
    if (tooLong_) {
        parser_.ReportErrorFormatted("Received a line of more than %d characters\n", static_cast<int>(longestLine));
        return;
    }
    const KeyAndValue parts = SplitLine(line_);
    const std::string_view unreported = UnreportedKey(header_, parts.key);
    if (!unreported.empty()) {
        unreported_[unreported] = parts.value;
        return;
    }
    if (IsSilentlyLost(header_, parts)) {
        parser_.ReportErrorFormatted("Failed to parse \"%s\" value string \"%s\"\n", std::string(parts.key).c_str(),
                                     std::string(parts.value).c_str());
        return;
    }
    line_ = LineFromHost(header_, line_);
    PassOn();
}

void HostLines::PassOn() {
    line_ += '\n';
    parser_.Feed(line_.data(), line_.size());
}

}  // namespace Morquil::Simulator
