#include <cstring>

#include "bench/parser_contest.h"

namespace Morquil::Bench {

namespace {

/// The least that any parser must do: find the ends of lines and keys.
void FindLinesAndColons(std::string_view text) {
    while (!text.empty()) {
        const void* const lineFeed = std::memchr(text.data(), '\n', text.size());
        if (lineFeed == nullptr) {
            return;
        }
        const auto length = static_cast<std::size_t>(static_cast<const char*>(lineFeed) - text.data());
        Use(std::memchr(text.data(), ':', length));
        text.remove_prefix(length + 1);
    }
}

}  // namespace

void AddPeerParsers(std::vector<Contestant>& contestants, const Corpus& corpus) {
    const std::vector<TextBlock> blocks = SplitBlocks(corpus.text);
    contestants.push_back(HttpParserReading(corpus.name + "/http_parser", blocks));
    contestants.push_back(MpdClientReading(corpus.name + "/libmpdclient", blocks));
    contestants.push_back(HiredisReading(corpus.name + "/hiredis", blocks));
    contestants.push_back({corpus.name + "/limit", [text = corpus.text] { FindLinesAndColons(text); }});
}

}  // namespace Morquil::Bench
