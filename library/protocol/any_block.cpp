#include "protocol/any_block.h"

#include <array>

#include "protocol/block_table.h"
#include "protocol/blocks/all.h"
#include "protocol/table/message.h"
#include "protocol/text/cut_detector.h"

namespace Morquil {

namespace {

struct Operations {
    std::string (*text)(const void* changeSet);
    std::unique_ptr<TextProtocolMessageBase> (*makeMessage)(const void* changeSet);
    std::unique_ptr<TextProtocolMessageBase> (*makeRequest)();
};

template <class Description>
std::string TextOfBlock(const void* changeSet) {
    return BlockText<Description>(*static_cast<const ChangeSetOf<Description>*>(changeSet));
}

template <class Description>
std::unique_ptr<TextProtocolMessageBase> MakeMessageOf(const void* changeSet) {
    auto message = std::make_unique<TextProtocolMessage<Description>>(*static_cast<const Description*>(changeSet));
    ClearWhatWouldBeCut(*message);
    return message;
}

template <class Description>
std::unique_ptr<TextProtocolMessageBase> MakeRequestOf() {
    return std::make_unique<TextProtocolMessage<Description>>();
}

constexpr std::array<Operations, blockCount> operations = [] {
    std::array<Operations, blockCount> all{};
    ForEachBlock([&]<class Description>() {
        Operations& block = all[placeOf<Description>];
        if constexpr (factsOf<Description>.role == BlockRole::Settings) {
            block.text = &TextOfBlock<Description>;
        }
        if constexpr (factsOf<Description>.isPlayedBack) {
            block.makeMessage = &MakeMessageOf<Description>;
        }
        if constexpr (factsOf<Description>.role == BlockRole::Offers && factsOf<Description>.isSent) {
            block.makeRequest = &MakeRequestOf<Description>;
        }
    });
    return all;
}();

}  // namespace

std::string BlockText(AnyBlock block) {
    return operations[block.place].text(block.changeSet);
}

std::unique_ptr<TextProtocolMessageBase> MakeMessage(AnyBlock block) {
    return operations[block.place].makeMessage(block.changeSet);
}

std::unique_ptr<TextProtocolMessageBase> MakeRequest(std::size_t place) {
    return operations[place].makeRequest();
}

}  // namespace Morquil
