#include "bench/connection_texts.h"

#include <numeric>

#include "bench/corpus.h"
#include "simulator/device/simulated_device.h"

namespace Morquil::Bench {

namespace {

constexpr std::size_t floodLength = 1 << 20;

Conversation Record() {
    constexpr Simulator::SimulatedDevice::HostId host = 1;
    Simulator::SimulatedDevice device{Simulator::DeviceIdentity()};
    device.Connect(host);
    Conversation conversation{.greeting = device.TakeTextFor(host), .requests = {}};
    ForEachBlock<BlockRole::Offers>([&]<class Description>() {
        if (factsOf<Description>.isSent) {
            const std::string question = BlockText<Description>({});
            device.Receive(host, question);
            conversation.requests.push_back({question, device.TakeTextFor(host)});
        }
    });
    return conversation;
}

std::string MakeFlood() {
    std::string updates;
    for (const TextBlock& block : SplitBlocks(UpdatesText())) {
        const std::string header = block.header + ":\n";
        if (header != floodHeader) {
            updates += header + block.lines[0].key + ": " + block.lines[0].value + "\n\n";
        }
    }
    std::string flood;
    while (flood.size() < floodLength) {
        flood += updates;
    }
    return flood;
}

}  // namespace

std::string DeviceAddress(int number) {
    return "127.98.0." + std::to_string(1 + number % deviceAddressCount);
}

std::size_t Conversation::Length() const {
    return std::accumulate(requests.begin(), requests.end(), greeting.size(),
                           [](std::size_t sum, const Exchange& exchange) { return sum + exchange.answer.size(); });
}

const Conversation& ConnectConversation() {
    static const Conversation conversation = Record();
    return conversation;
}

std::string EchoOf(std::string_view block) {
    return "ACK\n\n" + std::string(block);
}

const std::string& Flood() {
    static const std::string flood = MakeFlood();
    return flood;
}

}  // namespace Morquil::Bench
