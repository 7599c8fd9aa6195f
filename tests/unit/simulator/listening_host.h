// A host that understands everything a device sends, and keeps it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"

namespace Morquil::Simulator {

class ListeningHost final : public EveryBlockSink<ListeningHost> {
public:
    ListeningHost() { parser_.SetSink(this); }

    void Receive(std::string_view text) { parser_.Feed(text.data(), text.size()); }

    std::vector<std::string> blocks;  // the names of the blocks, in order of arrival
    std::vector<std::string> errors;
    int acknowledgements = 0;
    int refusals = 0;

    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& /*set*/) {
        blocks.emplace_back(Description::block.header.name);
    }
    void OnPing() override { errors.emplace_back("a ping"); }
    void OnAcknowledge(bool positive) override { positive ? ++acknowledgements : ++refusals; }
    void OnUnknownBlock() override { errors.emplace_back("an unknown block"); }
    void OnProtocolError(const char* text) override { errors.emplace_back(text); }

private:
    MorquilTextProtocolParser parser_;
};

}  // namespace Morquil::Simulator
