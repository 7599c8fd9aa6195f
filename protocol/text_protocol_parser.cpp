#include "protocol/text_protocol_parser.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>

#include "protocol/ascii.h"
#include "protocol/byte_block.h"
#include "protocol/format_text.h"

namespace Morquil {

namespace {

/// The last bytes of a text that is shorter than a block: a zero follows them.
[[gnu::noinline]] ByteBlock ShortBlock(const char* bytes, std::size_t length) {
    char block[ByteBlock::size] = {};
    std::memcpy(block, bytes, length);
    return ByteBlock(block);
}

/// The first byte from `at` on that `mark` marks, or the end. `mark` marks zeros, among others.
template <class Mark>
const char* FindMarked(std::string_view bytes, const char* at, Mark mark) {
    const char* const end = bytes.data() + bytes.size();
    for (; static_cast<std::size_t>(end - at) >= ByteBlock::size; at += ByteBlock::size) {
        if (const ByteBlock::Marks marks = mark(ByteBlock(at)); marks != 0) {
            return at + ByteBlock::First(marks);
        }
    }
    const auto left = static_cast<std::size_t>(end - at);
    if (left == 0) {
        return end;
    }
    // What is left is less than a block: it is taken as the end of the last block.
    const ByteBlock::Marks marks =
        bytes.size() >= ByteBlock::size
            ? ByteBlock::WithoutFirst(mark(ByteBlock(end - ByteBlock::size)), ByteBlock::size - left)
            : mark(ShortBlock(at, left));
    return at + std::min(ByteBlock::First(marks), left);
}

/// What of a line stands in a text: bytes without control characters.
struct Run {
    const char* end;
    std::size_t colon;  // the place of the first one, or LineBuffer::noColon
};

/// The run of `bytes` from `start` on. Most are shorter than what it takes to call a search of the system's.
Run FindRun(std::string_view bytes, const char* start) {
    const char* const mark =
        FindMarked(bytes, start, [](const ByteBlock& block) { return block.Below(' ') | block.Equal(':'); });
    if (mark == bytes.data() + bytes.size() || *mark != ':') {
        return {mark, LineBuffer::noColon};
    }
    return {FindMarked(bytes, mark + 1, [](const ByteBlock& block) { return block.Below(' '); }),
            static_cast<std::size_t>(mark - start)};
}

}  // namespace

void TextProtocolParser::Feed(const char* bytes, std::size_t length) {
    const std::string_view received(bytes, length);
    const char* const end = bytes + length;
    while (bytes != end) {
        const char* const start = bytes;
        const Run run = FindRun(received, start);
        const auto size = static_cast<std::size_t>(run.end - start);
        bytes = run.end;
        if (bytes != end && *bytes == '\n' && line_.IsEmpty() && size < LineBuffer::capacity) {
            TakeLine(start, size, run.colon);  // needs no buffer
            ++bytes;
            continue;
        }
        if (size <= line_.Room()) {
            line_.AppendRun(received, {start, size}, run.colon);
        } else {
            CutRun({start, size});
        }
        if (bytes != end) {
            TakeControl(*bytes++);
        }
    }
}

/// Keeps what is left of a run after as many full lines as it takes.
void TextProtocolParser::CutRun(std::string_view run) {
    while (!run.empty()) {
        CutFullLine();
        run = line_.Append(run);
    }
}

/// The byte behind a run.
void TextProtocolParser::TakeControl(char byte) {
    CutFullLine();  // before the byte is looked at: a line feed right behind a full buffer ends an empty line
    if (byte == '\n') {
        TakeBufferedLine();
    } else if (byte != '\r') {
        line_.Append({&byte, 1});
    }
}

void TextProtocolParser::CutFullLine() {
    if (line_.IsFull()) {
        ReportFullLine();
        line_.Clear();
    }
}

void TextProtocolParser::ReportFullLine() {
    ReportErrorFormatted("Input data reached maximum line size of %d characters",
                         static_cast<int>(LineBuffer::capacity));
}

void TextProtocolParser::TakeBufferedLine() {
    const std::string_view line = line_.Text();
    const std::size_t colon = line_.Colon();
    const bool isPlain = line_.IsPlain();
    line_.Clear();
    if (isPlain) {
        TakeLine(line.data(), line.size(), colon);
    } else {
        TakeOddLine(line);
    }
}

/// A line in which there may be a zero: whoever reads it sees its end there.
void TextProtocolParser::TakeOddLine(std::string_view line) {
    const std::string_view upToZero = UpToZero(line);
    if (upToZero.size() == line.size()) {
        TakeLine(line.data(), line.size(), line.find(':'));
    } else if (readerState_ == ReaderState::InsideBlock) {
        ParseLine(upToZero.data(), upToZero.size(), upToZero.find(':'));
    } else if (readerState_ == ReaderState::HeaderExpected) {
        TakeHeader(upToZero);  // a colon at the end of the line stands behind the zero
    }
}

void TextProtocolParser::TakeLine(const char* line, std::size_t size, std::size_t colon) {
    if (size == 0) {
        EndBlock();
        readerState_ = ReaderState::HeaderExpected;
    } else if (readerState_ == ReaderState::InsideBlock) {
        ParseLine(line, size, colon);
    } else if (readerState_ == ReaderState::HeaderExpected) {
        TakeHeader({line, size - (line[size - 1] == ':' ? 1 : 0)});
    }
}

void TextProtocolParser::TakeHeader(std::string_view header) {
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
