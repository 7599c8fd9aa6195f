#pragma once

#include <cstddef>
#include <tuple>

#include "protocol/block_table.h"
#include "protocol/blocks/all.h"

namespace Morquil {

class IMorquilTextProtocolSink;

/// What a parser reports besides blocks.
class ProtocolEventSink {
public:
    virtual ~ProtocolEventSink() = default;

    virtual void OnPing() = 0;
    virtual void OnAcknowledge(bool positive) = 0;
    virtual void OnUnknownBlock() = 0;
    /// `text` is valid during the call only.
    virtual void OnProtocolError(const char* text) = 0;

protected:
    ProtocolEventSink() = default;
    ProtocolEventSink(const ProtocolEventSink&) = default;
    ProtocolEventSink& operator=(const ProtocolEventSink&) = default;

    /// What an operation does when it is not overridden.
    template <class Description>
    void Pass(const ChangeSetOf<Description>& set);
};

/// The operations of the first `count` blocks of the table, after the events.
template <std::size_t count>
struct BlockSink : std::tuple_element_t<count - 1, BlockTable>::Description::template Operation<BlockSink<count - 1>> {
};
template <>
struct BlockSink<0> : ProtocolEventSink {};

/// Receives what the parser reads. The events of `ProtocolEventSink` come first, then one operation per block in the
/// order of the block table, each named in the block's own description (`OnVideoInput`). A block is delivered in the
/// parser's own change set, which is valid until the next header of that block; a sink copies what it keeps.
class IMorquilTextProtocolSink : public BlockSink<blockCount> {
protected:
    friend class ProtocolEventSink;

    /// Receives every block whose operation is not overridden: the change set of the block at this place of the table.
    virtual void OnOtherBlock(std::size_t /*place*/, const void* /*changeSet*/) {}
};

template <class Description>
void ProtocolEventSink::Pass(const ChangeSetOf<Description>& set) {
    static_cast<IMorquilTextProtocolSink*>(this)->OnOtherBlock(placeOf<Description>, &set);
}

/// The operation that receives the block at a place of the table.
template <std::size_t place>
inline constexpr auto sinkOperation = BlockSink<place + 1>::deliver;

}  // namespace Morquil
