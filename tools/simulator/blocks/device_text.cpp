#include "simulator/blocks/device_text.h"

#include <array>

#include "protocol/blocks/all.h"
#include "protocol/text/message_to_string.h"

namespace Morquil::Simulator {

namespace {

using Writer = void (*)(IMessageSender& sender, const void* changeSet);

constexpr std::array<Writer, blockCount> writers = [] {
    std::array<Writer, blockCount> all{};
    ForEachBlock([&]<class Description>() {
        all[placeOf<Description>] = [](IMessageSender& sender, const void* changeSet) {
            WriteBlock<Description, Side::Device>(sender, *static_cast<const ChangeSetOf<Description>*>(changeSet));
        };
    });
    return all;
}();

}  // namespace

std::string DeviceText(AnyBlock block) {
    MessageToString text;
    writers[block.place](text, block.changeSet);
    return std::string(text.GetText());
}

bool HoldsNothing(AnyBlock block) {
    const std::string text = DeviceText(block);
    return text.find('\n') == text.find("\n\n");  // the empty line comes right after the header
}

}  // namespace Morquil::Simulator
