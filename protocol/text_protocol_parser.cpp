#include "protocol/text_protocol_parser.h"

#include <cstdarg>
#include <cstring>

#include "protocol/ascii.h"
#include "protocol/format_text.h"

namespace Morquil {

void TextProtocolParser::Feed(const char* bytes, std::size_t length) {
    const char* const end = bytes + length;
    while (bytes != end) {
        bytes = TakeWholeLines(bytes, end);
        bytes = TakeBytesOfOneLine(bytes, end);
    }
}

/// The fast path: lines that lie whole in the received bytes and need no buffer. Returns where it had to stop.
const char* TextProtocolParser::TakeWholeLines(const char* bytes, const char* end) {
    while (lineLength_ == 0 && bytes != end) {
        const auto* lineFeed =
            static_cast<const char*>(std::memchr(bytes, '\n', static_cast<std::size_t>(end - bytes)));
        if (lineFeed == nullptr) {
            return bytes;
        }
        const auto length = static_cast<std::size_t>(lineFeed - bytes);
        if (length >= lineCapacity || std::memchr(bytes, '\r', length) != nullptr) {
            return bytes;
        }
        TakeLine({bytes, length});
        bytes = lineFeed + 1;
    }
    return bytes;
}

/// The general path, byte by byte to the end of the line at hand.
const char* TextProtocolParser::TakeBytesOfOneLine(const char* bytes, const char* end) {
    while (bytes != end) {
        const char byte = *bytes++;
        TakeByte(byte);
        if (byte == '\n') {
            break;
        }
    }
    return bytes;
}

void TextProtocolParser::TakeByte(char byte) {
    // The full buffer is emptied before the byte is looked at, so a line feed right behind it ends an empty line.
    if (lineLength_ == lineCapacity) {
        ReportErrorFormatted("Input data reached maximum line size of %d characters", static_cast<int>(lineCapacity));
        lineLength_ = 0;
    }
    if (byte == '\r') {
        return;
    }
    if (byte != '\n') {
        lineBuffer_[lineLength_++] = byte;
        return;
    }
    const std::size_t length = lineLength_;
    lineLength_ = 0;
    TakeLine({lineBuffer_.data(), length});
}

void TextProtocolParser::TakeLine(std::string_view line) {
    if (line.empty()) {
        EndBlock();
        readerState_ = ReaderState::HeaderExpected;
        return;
    }
    switch (readerState_) {
        case ReaderState::HeaderExpected:
            TakeHeader(line);
            break;
        case ReaderState::InsideBlock:
            ParseLine(UpToZero(line));
            break;
        case ReaderState::SkippingBlock:
            break;
    }
}

void TextProtocolParser::TakeHeader(std::string_view line) {
    if (line.back() == ':') {
        line.remove_suffix(1);
    }
    line = UpToZero(line);
    if (EqualsIgnoringCase(line, "PING")) {
        OnPingLine();
    } else if (EqualsIgnoringCase(line, "ACK")) {
        OnAcknowledgeLine(true);
    } else if (EqualsIgnoringCase(line, "NACK")) {
        OnAcknowledgeLine(false);
    } else {
        readerState_ = BeginBlock(line) ? ReaderState::InsideBlock : ReaderState::SkippingBlock;
    }
}

void TextProtocolParser::ReportErrorFormatted(const char* format, ...) {
    char text[maximumPieceLength + 1];
    std::va_list arguments;
    va_start(arguments, format);
    FormatText(text, sizeof text, format, arguments);
    va_end(arguments);
    ReportError(text);
}

}  // namespace Morquil
