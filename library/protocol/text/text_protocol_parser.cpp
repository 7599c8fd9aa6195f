#include "protocol/text/text_protocol_parser.h"

#include <cstdarg>

#include "protocol/text/ascii.h"
#include "protocol/text/format_text.h"

namespace Morquil {

namespace {

/// Whether lines can be used as received: no carriage return to drop, and no zero byte that would end a line early.
bool IsPlain(std::string_view received) {
    return received.find('\r') == std::string_view::npos && received.find('\0') == std::string_view::npos;
}

}  // namespace

void TextProtocolParser::Feed(const char* bytes, std::size_t length) {
    std::string_view received(bytes, length);
    const bool isPlain = IsPlain(received);
    while (!received.empty()) {
        const std::string_view piece = received.substr(0, received.find('\n'));
        const bool endsLine = piece.size() < received.size();
        received.remove_prefix(piece.size() + (endsLine ? 1 : 0));
        if (isPlain && endsLine && line_.IsEmpty() && piece.size() < LineBuffer::capacity) {
            ProcessLine(piece);  // needs no copy
            continue;
        }
        KeepPiece(piece);
        if (endsLine) {
            ProcessBufferedLine();
        }
    }
}

/// Appends a piece of a line to the buffered part, without its carriage returns.
void TextProtocolParser::KeepPiece(std::string_view piece) {
    while (!piece.empty()) {
        CutFullLine();  // any byte after the last one that fits does this, even a carriage return
        if (piece.front() == '\r') {
            piece.remove_prefix(1);
            continue;
        }
        const std::string_view run = piece.substr(0, piece.find('\r'));
        piece.remove_prefix(run.size() - line_.Append(run).size());
    }
}

void TextProtocolParser::CutFullLine() {
    if (line_.IsFull()) {
        ReportErrorFormatted("Input data reached maximum line size of %d characters",
                             static_cast<int>(LineBuffer::capacity));
        line_.Clear();
    }
}

void TextProtocolParser::ProcessBufferedLine() {
    CutFullLine();  // a line feed right after a full buffer ends an empty line
    const std::string_view line = line_.Text();
    line_.Clear();
    const std::string_view text = UpToZero(line);
    if (text.size() == line.size()) {
        ProcessLine(line);
    } else if (readerState_ == ReaderState::InsideBlock) {
        ParseLine(text);
    } else if (readerState_ == ReaderState::HeaderExpected) {
        ProcessHeader(text);  // a colon at the end of the line comes after the zero
    }
}

void TextProtocolParser::ProcessLine(std::string_view line) {
    if (line.empty()) {
        EndBlock();
        readerState_ = ReaderState::HeaderExpected;
    } else if (readerState_ == ReaderState::InsideBlock) {
        ParseLine(line);
    } else if (readerState_ == ReaderState::HeaderExpected) {
        ProcessHeader(line.substr(0, line.size() - (line.back() == ':' ? 1 : 0)));
    }
}

void TextProtocolParser::ProcessHeader(std::string_view header) {
    if (EqualsIgnoringCase(header, "PING")) {
        OnPingLine();
    } else if (EqualsIgnoringCase(header, "ACK")) {
        OnAcknowledgeLine(true);
    } else if (EqualsIgnoringCase(header, "NACK")) {
        OnAcknowledgeLine(false);
    } else {
        readerState_ = BeginBlock(header) ? ReaderState::InsideBlock : ReaderState::SkippingBlock;
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
