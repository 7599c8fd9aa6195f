#pragma once

#include <cstddef>

#include "bench/plain_blocks.h"

namespace Morquil::Bench {

/// The protocol's parser in its simplest form: every byte goes into a line buffer, every header, key and word is found
/// by linear search, every value is read by a new string stream.
class LiteralParser {
public:
    explicit LiteralParser(IMorquilTextProtocolSink& sink) : blocks_(sink) {}

    void Feed(const char* bytes, std::size_t length);

private:
    void TakeLine();
    void ProcessHeader();
    void TakeKeyAndValue();
    [[gnu::format(printf, 2, 3)]] void Report(const char* format, ...);

    enum class State { Header, Inside, Skipping };

    PlainBlocks blocks_;
    State state_ = State::Header;
    char line_[257] = {};
    std::size_t length_ = 0;
};

}  // namespace Morquil::Bench
