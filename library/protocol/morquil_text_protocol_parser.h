#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>

#include "protocol/sink.h"
#include "protocol/table/line_context.h"
#include "protocol/table/side.h"
#include "protocol/text/text_protocol_parser.h"

namespace Morquil {

class MorquilTextProtocolParser;
struct ChangeSets;
template <Side side>
struct BlockOperationsOf;

/// What a parser does with a block.
struct BlockOperations {
    void (*begin)(MorquilTextProtocolParser&);
    void (*read)(MorquilTextProtocolParser&, const LineContext& line, std::string_view key);
    void (*deliver)(MorquilTextProtocolParser&, IMorquilTextProtocolSink&);
};

/// Reads the other side's blocks into change sets and delivers each at its empty line.
class MorquilTextProtocolParser final : public TextProtocolParser {
public:
    /// Reads, as a host, what a device sends.
    MorquilTextProtocolParser();
    /// `operations`: what to do with each block, by its place in the table.
    explicit MorquilTextProtocolParser(const BlockOperations* operations);
    ~MorquilTextProtocolParser() override;

    /// `sink` is not owned; without one, blocks and errors are dropped.
    /// Threads: any, also inside a sink operation. Does not wait for an operation that is running.
    void SetSink(IMorquilTextProtocolSink* sink) { sink_ = sink; }
    bool HasSink() const { return sink_ != nullptr; }

protected:
    void ReportError(const char* text) override;
    bool BeginBlock(std::string_view header) override;
    void ParseLine(std::string_view line) override;
    void EndBlock() override;
    void OnPingLine() override;
    void OnAcknowledgeLine(bool positive) override;

private:
    template <Side side>
    friend struct BlockOperationsOf;

    void ReadValue(std::string_view key, std::string_view value);

    static constexpr std::int32_t noBlock = 0;
    static constexpr std::int32_t unknownBlock = -1;

    const BlockOperations* const operations_;
    std::int32_t currentBlock_ = noBlock;
    std::atomic<IMorquilTextProtocolSink*> sink_ = nullptr;
    Selections selections_;
    const std::unique_ptr<ChangeSets> changeSets_;
};

}  // namespace Morquil
