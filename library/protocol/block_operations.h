#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <utility>

#include "protocol/morquil_text_protocol_parser.h"

namespace Morquil {

/// What the parser of one side does with each block, by place in the table.
template <Side side>
struct BlockOperationsOf {
    using Parser = MorquilTextProtocolParser;

    template <std::size_t block>
    using Entry = std::tuple_element_t<block, BlockTable>;

    template <std::size_t block>
    static void Begin(Parser& parser) {
        Clear(std::get<block>(parser.changeSets_));
    }
    template <std::size_t block>
    static void Read(Parser& parser, const LineContext& line, std::string_view key) {
        KeyIndex<typename Entry<block>::Description, side>::ReadLine(line, key, std::get<block>(parser.changeSets_));
    }
    template <std::size_t block>
    static void Deliver(Parser& parser, IMorquilTextProtocolSink& sink) {
        (sink.*sinkOperation<block>)(std::get<block>(parser.changeSets_));
    }

    static constexpr std::array<BlockOperations, blockCount> all =
        []<std::size_t... block>(std::index_sequence<block...>) {
        return std::array<BlockOperations, blockCount>{
            BlockOperations{&Begin<block>, &Read<block>, &Deliver<block>}...};
    }
    (std::make_index_sequence<blockCount>());
};

}  // namespace Morquil
