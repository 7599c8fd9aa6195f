// What takes part in the contest of parsers, and how.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "bench/contest.h"
#include "bench/corpus.h"

namespace Morquil::Bench {

/// A device's read is at most this long.
inline constexpr std::size_t receiveLength = 1024;

/// Hands `text` on in pieces.
template <class Feed>
void FeedPieces(std::string_view text, std::size_t length, Feed feed) {
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, length);
        feed(piece.data(), piece.size());
        text.remove_prefix(piece.size());
    }
}

/// A text, by its name in the figures.
struct Corpus {
    std::string name;
    std::string text;
};

/// The libraries that read the same keys and values, each in its own framing, and the limit of all of them.
/// None where there are no such packages.
void AddPeerParsers(std::vector<Contestant>& contestants, const Corpus& corpus);

// The libraries that are there natively, one per file.
Contestant HttpParserReading(const std::string& name, const std::vector<TextBlock>& blocks);
Contestant MpdClientReading(const std::string& name, const std::vector<TextBlock>& blocks);
Contestant HiredisReading(const std::string& name, const std::vector<TextBlock>& blocks);

}  // namespace Morquil::Bench
