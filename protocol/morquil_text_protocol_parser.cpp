#include "protocol/morquil_text_protocol_parser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "protocol/name_table.h"

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
    static void Read(Parser& parser, const LineContext& line, const std::string_view& key) {
        KeyIndex<typename Entry<block>::Description>::ReadLine(line, key, std::get<block>(parser.changeSets_));
    }
    template <std::size_t block>
    static void Deliver(Parser& parser, IMorquilTextProtocolSink& sink) {
        (sink.*Entry<block>::deliver)(std::get<block>(parser.changeSets_));
    }

    void (*begin)(Parser&);
    void (*read)(Parser&, const LineContext& line, const std::string_view& key);
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

namespace {

constexpr bool IsSkipped(char character) {
    return character == ' ' || character == ':';
}

/// The first place from `at` on that is neither space nor colon, or the text's size.
std::size_t Skip(std::string_view text, std::size_t at) {
    while (at < text.size() && IsSkipped(text[at])) {
        ++at;
    }
    return at;
}

struct KeyAndValue {
    std::string_view key;
    std::string_view value;  // empty when the line has none
};

/// The key runs from its first character that is neither space nor colon to the next colon; the value from the first
/// such character behind a colon to the end of the line. A line that begins with a colon has seen one already when its
/// key starts, so the key's second character starts the value.
KeyAndValue SplitLine(std::string_view line, std::size_t colon) {
    const std::size_t keyStart = Skip(line, 0);
    const bool colonIsFirst = colon < keyStart;
    const std::size_t valueStart = Skip(line, std::min((colonIsFirst ? keyStart : colon) + 1, line.size()));
    const std::size_t keyEnd = std::min(colonIsFirst ? line.find(':', keyStart) : colon, line.size());
    return {{line.data() + keyStart, (keyEnd < valueStart ? keyEnd : line.size()) - keyStart},
            {line.data() + valueStart, line.size() - valueStart}};
}

/// Whether a line is what devices write: a key, a colon, one space and a value. To see that takes no search.
bool IsPlain(const char* line, std::size_t size, std::size_t colon) {
    return colon < size && colon + 2 < size && !IsSkipped(line[0]) && IsSkipped(line[colon + 1]) &&
           !IsSkipped(line[colon + 2]);
}

}  // namespace

void MorquilTextProtocolParser::ReadValue(std::string_view key, std::string_view value) {
    if (currentBlock_ >= 1) {
        const LineContext line{*this, selections_, value};
        BlockOperations::all[static_cast<std::size_t>(currentBlock_ - 1)].read(*this, line, key);
    }
}

void MorquilTextProtocolParser::ParseLine(const char* line, std::size_t size, std::size_t colon) {
    if (IsPlain(line, size, colon)) {
        ReadValue({line, colon}, {line + colon + 2, size - colon - 2});
    } else {
        ParseOddLine({line, size}, colon);
    }
}

void MorquilTextProtocolParser::ParseOddLine(std::string_view line, std::size_t colon) {
    if (colon == std::string_view::npos) {
        ReportErrorFormatted("Received line with no colon character\n");
        return;
    }
    const KeyAndValue parts = SplitLine(line, colon);
    if (parts.value.empty()) {
        ReportText(*this, "Received line \"%s\" with no value string\n", {line.data(), colon});
    } else {
        ReadValue(parts.key, parts.value);
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
