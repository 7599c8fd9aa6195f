// The contestants that read text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "bench/contest.h"
#include "bench/corpus.h"

namespace Morquil::Bench {

/// A connection receives at most this many bytes at once.
inline constexpr std::size_t receiveLength = 1024;

/// Passes `text` on in pieces.
template <class Feed>
void FeedPieces(std::string_view text, std::size_t length, Feed feed) {
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, length);
        feed(piece.data(), piece.size());
        text.remove_prefix(piece.size());
    }
}

/// A text, and its name in the figures.
struct Corpus {
    std::string name;
    std::string text;
};

/// Adds other libraries, which read the same keys and values, each in its own format, and the limit of all parsers.
/// Adds none on systems without such packages.
void AddPeerParsers(std::vector<Contestant>& contestants, const Corpus& corpus);

// The libraries that are available natively, one per file.
Contestant HttpParserReading(const std::string& name, const std::vector<TextBlock>& blocks);
Contestant MpdClientReading(const std::string& name, const std::vector<TextBlock>& blocks);
Contestant HiredisReading(const std::string& name, const std::vector<TextBlock>& blocks);

}  // namespace Morquil::Bench
