#include "protocol/text_protocol_parser.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>

#include "protocol/ascii.h"
#include "protocol/byte_block.h"
#include "protocol/format_text.h"

namespace Morquil {

namespace {

/// A run of bytes without control characters, which is what a line consists of.
struct Run {
    const char* end;
    std::size_t colon;  // the place of the first one, or LineBuffer::noColon
};

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
        const Run found = FindRun(received, bytes);
        const std::string_view run(bytes, static_cast<std::size_t>(found.end - bytes));
        const bool isWhole = found.end != end && *found.end == '\n' && line_.IsEmpty();
        bytes = found.end;
        if (isWhole && run.size() < LineBuffer::capacity) {
            TakeLine(run, found.colon);  // needs no buffer
            ++bytes;
            continue;
        }
        if (run.size() <= line_.Room()) {
            line_.AppendRun(received, run, found.colon);
        } else {
            CutRun(run);
        }
        if (bytes != end) {
            TakeControl(*bytes++);
        }
    }
}

/// Keeps what is left of a run after as many full lines as it takes.
void TextProtocolParser::CutRun(std::string_view run) {
    while (!run.empty()) {
        if (line_.IsFull()) {
            CutLine();
        }
        run = line_.Append(run);
    }
}

void TextProtocolParser::TakeControl(char byte) {
    if (line_.IsFull()) {
        CutLine();  // before the byte is looked at: a line feed right behind a full buffer ends an empty line
    }
    if (byte == '\n') {
        TakeBufferedLine();
    } else if (byte != '\r') {
        line_.Append({&byte, 1});
    }
}

void TextProtocolParser::CutLine() {
    ReportErrorFormatted("Input data reached maximum line size of %d characters",
                         static_cast<int>(LineBuffer::capacity));
    line_.Clear();
}

void TextProtocolParser::TakeBufferedLine() {
    const std::string_view line = line_.Text();
    if (line_.IsPlain()) {
        const std::size_t colon = line_.Colon();
        line_.Clear();
        TakeLine(line, colon);
    } else {
        line_.Clear();
        TakeOddLine(line);
    }
}

/// A line in which there may be a zero: whoever reads it sees its end there.
void TextProtocolParser::TakeOddLine(std::string_view line) {
    const std::string_view upToZero = UpToZero(line);
    if (upToZero.size() == line.size()) {
        TakeLine(line, line.find(':'));
    } else if (readerState_ == ReaderState::InsideBlock) {
        ParseLine(upToZero, upToZero.find(':'));
    } else if (readerState_ == ReaderState::HeaderExpected) {
        TakeHeader(upToZero);  // a colon at the end of the line stands behind the zero
    }
}

void TextProtocolParser::TakeLine(std::string_view line, std::size_t colon) {
    if (line.empty()) {
        EndBlock();
        readerState_ = ReaderState::HeaderExpected;
    } else if (readerState_ == ReaderState::InsideBlock) {
        ParseLine(line, colon);
    } else if (readerState_ == ReaderState::HeaderExpected) {
        TakeHeader({line.data(), line.size() - (line.back() == ':' ? 1 : 0)});
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
