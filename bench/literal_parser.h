#pragma once

#include <cstddef>

#include "bench/plain_blocks.h"

namespace Morquil::Bench {

/// The protocol's parser once more, as plainly as it can be written: every byte goes into a line buffer, every header,
/// key and word is searched for from the first to the last, every value is read by a string stream of its own.
class LiteralParser {
public:
    explicit LiteralParser(IMorquilTextProtocolSink& sink) : blocks_(sink) {}

    void Feed(const char* bytes, std::size_t length);

private:
    void TakeLine();
    void TakeHeader();
    void TakeKeyAndValue();
    [[gnu::format(printf, 2, 3)]] void Report(const char* format, ...);

    enum class State { Header, Inside, Skipping };

    PlainBlocks blocks_;
    State state_ = State::Header;
    char line_[257] = {};
    std::size_t length_ = 0;
};

}  // namespace Morquil::Bench
