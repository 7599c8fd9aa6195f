#pragma once

#include <array>
#include <cstddef>
#include <tuple>

#include "bench/literal_rows.h"
#include "protocol/blocks/all.h"
#include "protocol/sink_operations.h"

namespace Morquil::Bench {

/// The blocks for simple parsers: found by linear search of their names, filled row by row.
class PlainBlocks {
public:
    explicit PlainBlocks(IMorquilTextProtocolSink& sink) : sink_(sink) {}

    IMorquilTextProtocolSink& Sink() { return sink_; }

    /// Starts a block. Returns: whether it exists; if so, it is empty now.
    bool Begin(const char* header);
    /// Whether the block knows the key.
    bool Read(const char* key, const char* value);
    void End();

private:
    template <std::size_t block>
    using Entry = std::tuple_element_t<block, BlockTable>;

    template <std::size_t block>
    static void BeginBlock(PlainBlocks& blocks) {
        Clear(std::get<block>(blocks.sets_));
    }
    template <std::size_t block>
    static bool ReadBlock(PlainBlocks& blocks, const LiteralLine& line) {
        return LiteralReadLine<typename Entry<block>::Description>(line, std::get<block>(blocks.sets_));
    }
    template <std::size_t block>
    static void DeliverBlock(PlainBlocks& blocks) {
        (blocks.sink_.*sinkOperation<block>)(std::get<block>(blocks.sets_));
    }

    struct Operations {
        const char* name;
        void (*begin)(PlainBlocks&);
        bool (*read)(PlainBlocks&, const LiteralLine&);
        void (*deliver)(PlainBlocks&);
    };
    static const std::array<Operations, blockCount> all;

    template <class Table>
    struct SetsOf;
    template <class... Entries>
    struct SetsOf<std::tuple<Entries...>> {
        using Type = std::tuple<ChangeSetOf<typename Entries::Description>...>;
    };

    IMorquilTextProtocolSink& sink_;
    Selections selections_;
    std::size_t current_ = blockCount;
    SetsOf<BlockTable>::Type sets_;
};

}  // namespace Morquil::Bench
