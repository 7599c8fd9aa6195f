#include "bench/compiled_rows.h"
#include "bench/writer_contest.h"

namespace Morquil::Bench {

namespace {

struct CompiledMessage {
    virtual ~CompiledMessage() = default;
    virtual void WriteTo(CompiledText& text) const = 0;
};

template <class Description>
struct CompiledMessageOf final : CompiledMessage {
    explicit CompiledMessageOf(const ChangeSetOf<Description>& values) : set(values) {}
    void WriteTo(CompiledText& text) const override { CompiledWriteBlock<Description>(text, set); }

    ChangeSetOf<Description> set;
};

using Maker = MessageMaker<CompiledMessage, CompiledMessageOf>;

}  // namespace

void AddPeerWriters(std::vector<Contestant>& contestants, const MessageCorpus& corpus, const std::string& expected) {
    const auto messages = std::make_shared<Maker::Messages>(Maker::From(corpus.text));
    CompiledText all;
    for (const auto& message : *messages) {
        message->WriteTo(all);
    }
    RequireEqual(std::string(all.data(), all.size()), expected, "fmt and the library's writer");
    contestants.push_back({corpus.name + "/fmt", [messages, text = std::make_shared<CompiledText>()] {
                               for (const auto& message : *messages) {
                                   text->clear();
                                   message->WriteTo(*text);
                                   Use(text->data());
                               }
                           }});
}

}  // namespace Morquil::Bench
