#include "bench/plain_blocks.h"

#include <utility>

namespace Morquil::Bench {

const std::array<PlainBlocks::Operations, blockCount> PlainBlocks::all =
    []<std::size_t... block>(std::index_sequence<block...>) {
    return std::array<Operations, blockCount>{Operations{
        Entry<block>::Description::block.header.name, &BeginBlock<block>, &ReadBlock<block>, &DeliverBlock<block>}...};
}
(std::make_index_sequence<blockCount>());

bool PlainBlocks::Begin(const char* header) {
    for (current_ = 0; current_ < blockCount; ++current_) {
        if (SameText(header, all[current_].name)) {
            all[current_].begin(*this);
            return true;
        }
    }
    return false;
}

bool PlainBlocks::Read(const char* key, const char* value) {
    return all[current_].read(*this, {key, value, selections_});
}

void PlainBlocks::End() {
    selections_.EndBlock();
    if (current_ < blockCount) {
        all[current_].deliver(*this);
    }
    current_ = blockCount;
}

}  // namespace Morquil::Bench
