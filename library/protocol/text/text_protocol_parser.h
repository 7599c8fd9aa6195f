#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "protocol/text/line_buffer.h"
#include "protocol/text/message_sender.h"

namespace Morquil {

/// Splits a byte stream into lines and groups the lines into blocks: a header line, lines, an empty line. Does not know
/// any block by name. The calls are the same however the stream is split. One thread at a time.
class TextProtocolParser {
public:
    virtual ~TextProtocolParser() = default;

    /// Parses the next bytes of the stream; keeps an unfinished line for the next call.
    void Feed(const char* bytes, std::size_t length);

    /// Whether the next line is expected to be a header, not a line of a block.
    bool ExpectsHeader() const { return readerState_ == ReaderState::HeaderExpected; }

    /// Reports an error text, cut after 255 characters.
    [[gnu::format(printf, 2, 3)]] void ReportErrorFormatted(const char* format, ...);

protected:
    TextProtocolParser() = default;
    TextProtocolParser(const TextProtocolParser&) = delete;
    TextProtocolParser& operator=(const TextProtocolParser&) = delete;

    virtual void ReportError(const char* text) = 0;
    /// `header` comes without its colon. Returns whether the block is known; the lines of an unknown one are skipped.
    virtual bool BeginBlock(std::string_view header) = 0;
    /// A line of a known block.
    virtual void ParseLine(std::string_view line) = 0;
    virtual void EndBlock() = 0;
    virtual void OnPingLine() = 0;
    virtual void OnAcknowledgeLine(bool positive) = 0;

private:
    enum class ReaderState : std::uint32_t { HeaderExpected = 0, InsideBlock = 1, SkippingBlock = 2 };

    void KeepPiece(std::string_view piece);
    void CutFullLine();
    void ProcessBufferedLine();
    void ProcessLine(std::string_view line);
    void ProcessHeader(std::string_view header);

    ReaderState readerState_ = ReaderState::HeaderExpected;
    LineBuffer line_;
};

}  // namespace Morquil
