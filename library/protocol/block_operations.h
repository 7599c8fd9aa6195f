#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <utility>

#include "protocol/block_table.h"
#include "protocol/blocks/all.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/sink_operations.h"

namespace Morquil {

/// One change set per block, in the order of the table.
struct ChangeSets {
    template <class Table>
    struct Of;
    template <class... Entries>
    struct Of<std::tuple<Entries...>> {
        using Type = PlainTuple<ChangeSetOf<typename Entries::Description>...>;
    };

    Of<BlockTable>::Type all;
};

/// What the parser of one side does with each block, by place in the table.
template <Side side>
struct BlockOperationsOf {
    using Parser = MorquilTextProtocolParser;

    template <std::size_t block>
    using Entry = std::tuple_element_t<block, BlockTable>;

    template <std::size_t block>
    static void Begin(Parser& parser) {
        Clear(parser.changeSets_->all.template Get<block>());
    }
    template <std::size_t block>
    static void Read(Parser& parser, const LineContext& line, std::string_view key) {
        KeyIndex<typename Entry<block>::Description, side>::ReadLine(line, key,
                                                                     parser.changeSets_->all.template Get<block>());
    }
    template <std::size_t block>
    static void Deliver(Parser& parser, IMorquilTextProtocolSink& sink) {
        (sink.*sinkOperation<block>)(parser.changeSets_->all.template Get<block>());
    }

    static constexpr std::array<BlockOperations, blockCount> all =
        []<std::size_t... block>(std::index_sequence<block...>) {
        return std::array<BlockOperations, blockCount>{
            BlockOperations{&Begin<block>, &Read<block>, &Deliver<block>}...};
    }
    (std::make_index_sequence<blockCount>());
};

}  // namespace Morquil
