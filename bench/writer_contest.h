// The contestants that write text.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/contest.h"
#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/table/message.h"

namespace Morquil::Bench {

/// Makes a `Made<Description>` from every block of settings in a text.
template <class Base, template <class> class Made>
class MessageMaker final : public EveryBlockSink<MessageMaker<Base, Made>> {
public:
    using Messages = std::vector<std::unique_ptr<Base>>;

    static Messages From(std::string_view text) {
        MessageMaker maker;
        MorquilTextProtocolParser parser;
        parser.SetSink(&maker);
        parser.Feed(text.data(), text.size());
        return std::move(maker.messages_);
    }

    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        if constexpr (factsOf<Description>.role == BlockRole::Settings) {
            messages_.push_back(std::make_unique<Made<Description>>(set));
        }
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* /*text*/) override {}

private:
    Messages messages_;
};

/// The text from which the messages of a figure are made.
struct MessageCorpus {
    std::string name;
    std::string text;
};

/// Adds a writer with fmt's compiled formats, which must write `expected`; adds none on systems without that package.
void AddPeerWriters(std::vector<Contestant>& contestants, const MessageCorpus& corpus, const std::string& expected);

}  // namespace Morquil::Bench
