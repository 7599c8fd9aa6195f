#include "protocol/morquil_text_protocol_parser.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "protocol/name_table.h"
#include "protocol/split_line.h"

namespace Morquil {

/// What the parser does with each block, by place in the table.
struct BlockOperations {
    using Parser = MorquilTextProtocolParser;

    template <std::size_t block>
    using Entry = std::tuple_element_t<block, BlockTable>;

    template <std::size_t block>
    static void Begin(Parser& parser) {
        Clear(std::get<block>(parser.changeSets_));
    }
    template <std::size_t block>
    static void Read(Parser& parser, const LineContext& line, std::string_view key) {
        KeyIndex<typename Entry<block>::Description>::ReadLine(line, key, std::get<block>(parser.changeSets_));
    }
    template <std::size_t block>
    static void Deliver(Parser& parser, IMorquilTextProtocolSink& sink) {
        (sink.*Entry<block>::deliver)(std::get<block>(parser.changeSets_));
    }

    void (*begin)(Parser&);
    void (*read)(Parser&, const LineContext& line, std::string_view key);
    void (*deliver)(Parser&, IMorquilTextProtocolSink&);

    static const std::array<BlockOperations, blockCount> all;
    static const NameTable<blockCount> headers;
};

constexpr std::array<BlockOperations, blockCount> BlockOperations::all =
    []<std::size_t... block>(std::index_sequence<block...>) {
    return std::array<BlockOperations, blockCount>{BlockOperations{&Begin<block>, &Read<block>, &Deliver<block>}...};
}
(std::make_index_sequence<blockCount>());

constexpr NameTable<blockCount> BlockOperations::headers = []<std::size_t... block>(std::index_sequence<block...>) {
    return NameTable<blockCount>(
        std::array<std::string_view, blockCount>{Entry<block>::Description::block.header.name...});
}
(std::make_index_sequence<blockCount>());

bool MorquilTextProtocolParser::BeginBlock(std::string_view header) {
    const std::size_t block = BlockOperations::headers.Find(header);
    if (block == blockCount) {
        ReportText(*this, "Received unknown block header \"%s\"\n", header);
        currentBlock_ = unknownBlock;
        return false;
    }
    currentBlock_ = static_cast<std::int32_t>(block + 1);
    BlockOperations::all[block].begin(*this);
    return true;
}

void MorquilTextProtocolParser::ReadValue(std::string_view key, std::string_view value) {
    if (currentBlock_ >= 1) {
        const LineContext line{*this, selections_, value};
        BlockOperations::all[static_cast<std::size_t>(currentBlock_ - 1)].read(*this, line, key);
    }
}

void MorquilTextProtocolParser::ParseLine(std::string_view line) {
    const KeyAndValue parts = SplitLine(line);
    if (!parts.value.empty()) {
        ReadValue(parts.key, parts.value);
    } else if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
        ReportText(*this, "Received line \"%s\" with no value string\n", line.substr(0, colon));
    } else {
        ReportErrorFormatted("Received line with no colon character\n");
    }
}

void MorquilTextProtocolParser::EndBlock() {
    const std::int32_t ended = currentBlock_;
    selections_.EndBlock();
    IMorquilTextProtocolSink* const sink = sink_;
    if (sink != nullptr && ended == unknownBlock) {
        sink->OnUnknownBlock();
    } else if (sink != nullptr && ended != noBlock) {
        BlockOperations::all[static_cast<std::size_t>(ended - 1)].deliver(*this, *sink);
    }
    currentBlock_ = noBlock;
}

void MorquilTextProtocolParser::ReportError(const char* text) {
    if (IMorquilTextProtocolSink* const sink = sink_) {
        sink->OnProtocolError(text);
    }
}

void MorquilTextProtocolParser::OnPingLine() {
    if (IMorquilTextProtocolSink* const sink = sink_) {
        sink->OnPing();
    }
}

void MorquilTextProtocolParser::OnAcknowledgeLine(bool positive) {
    if (IMorquilTextProtocolSink* const sink = sink_) {
        sink->OnAcknowledge(positive);
    }
}

}  // namespace Morquil
