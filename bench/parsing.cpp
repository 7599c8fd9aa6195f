// How fast received text becomes values.
#include <memory>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "bench/literal_parser.h"
#include "bench/naive_parser.h"
#include "bench/parser_contest.h"
#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/table/message.h"

namespace Morquil::Bench {

namespace {

/// Uses each block and keeps nothing.
class PassingSink final : public EveryBlockSink<PassingSink> {
public:
    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        Use(&set);
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* text) override { Use(text); }
};

/// Collects the text of each block.
class WritingSink final : public EveryBlockSink<WritingSink> {
public:
    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        text += BlockText<Description>(set);
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override { text += "?\n"; }
    void OnProtocolError(const char* error) override { text += error; }

    std::string text;
};

struct LibraryParser {
    explicit LibraryParser(IMorquilTextProtocolSink& sink) { parser.SetSink(&sink); }
    void Feed(const char* bytes, std::size_t length) { parser.Feed(bytes, length); }

    MorquilTextProtocolParser parser;
};

template <class Parser>
std::string ReadingOf(const std::string& text) {
    WritingSink sink;
    Parser parser(sink);
    parser.Feed(text.data(), text.size());
    return sink.text;
}

std::string NaiveReadingOf(const std::string& text) {
    WritingSink sink;
    PlainBlocks blocks(sink);
    NaiveParse(text, blocks);
    return sink.text;
}

void RequireSameReading(const std::string& text) {
    const std::string reading = ReadingOf<LibraryParser>(text);
    RequireEqual(reading, ReadingOf<LiteralParser>(text), "the library's and the literal parser");
    RequireEqual(reading, NaiveReadingOf(text), "the library's and the naive parser");
}

template <class Parser>
Contestant Feeding(const std::string& name, const Corpus& corpus, std::size_t pieceLength, PassingSink& sink) {
    return {name, [text = corpus.text, pieceLength, parser = std::make_shared<Parser>(sink)] {
                FeedPieces(text, pieceLength,
                           [&](const char* bytes, std::size_t length) { parser->Feed(bytes, length); });
            }};
}

void AddContest(std::vector<Contestant>& contestants, const Corpus& corpus, PassingSink& sink) {
    RequireSameReading(corpus.text);
    contestants.push_back(Feeding<LibraryParser>(corpus.name + "/library", corpus, receiveLength, sink));
    contestants.push_back(Feeding<LibraryParser>(corpus.name + "/library-64", corpus, 64, sink));
    contestants.push_back(Feeding<LiteralParser>(corpus.name + "/literal", corpus, receiveLength, sink));
    contestants.push_back({corpus.name + "/naive", [text = corpus.text, blocks = std::make_shared<PlainBlocks>(sink)] {
                               NaiveParse(text, *blocks);
                           }});
    AddPeerParsers(contestants, corpus);
}

int Run(int argumentCount, char** arguments) {
    PassingSink sink;
    std::vector<Contestant> contestants;
    AddContest(contestants, {"dump", DumpText()}, sink);
    AddContest(contestants, {"updates", UpdatesText()}, sink);
    return Measure(argumentCount, arguments, contestants);
}

}  // namespace

}  // namespace Morquil::Bench

int main(int argumentCount, char** arguments) {
    return Morquil::Bench::Run(argumentCount, arguments);
}
