#include "protocol/morquil_text_protocol_parser.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "protocol/block_operations.h"
#include "protocol/text/name_table.h"
#include "protocol/text/split_line.h"

namespace Morquil {

namespace {

constexpr NameTable<blockCount> headers{[] {
    std::array<std::string_view, blockCount> names{};
    std::size_t block = 0;
    ForEachBlock([&]<class Description>() { names[block++] = Description::block.header.name; });
    return names;
}()};

}  // namespace

MorquilTextProtocolParser::MorquilTextProtocolParser()
    : MorquilTextProtocolParser(BlockOperationsOf<Side::Host>::all.data()) {}

MorquilTextProtocolParser::MorquilTextProtocolParser(const BlockOperations* operations)
    : operations_(operations), changeSets_(std::make_unique<ChangeSets>()) {}

MorquilTextProtocolParser::~MorquilTextProtocolParser() = default;

bool MorquilTextProtocolParser::BeginBlock(std::string_view header) {
    const std::size_t block = headers.Find(header);
    if (block == blockCount) {
        ReportText(*this, "Received unknown block header \"%s\"\n", header);
        currentBlock_ = unknownBlock;
        return false;
    }
    currentBlock_ = static_cast<std::int32_t>(block + 1);
    operations_[block].begin(*this);
    return true;
}

void MorquilTextProtocolParser::ReadValue(std::string_view key, std::string_view value) {
    if (currentBlock_ >= 1) {
        const LineContext line{*this, selections_, value};
        operations_[static_cast<std::size_t>(currentBlock_ - 1)].read(*this, line, key);
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
        operations_[static_cast<std::size_t>(ended - 1)].deliver(*this, *sink);
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
