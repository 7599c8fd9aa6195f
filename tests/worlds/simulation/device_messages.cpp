#include "tests/worlds/simulation/device_messages.h"

#include <array>

#include "tests/unit/device/device_texts.h"
#include "tests/worlds/simulation/expected_queue.h"

namespace Morquil::Testing::Worlds {

namespace {

std::vector<DeviceMessage> MessagesIn(std::string_view text) {
    std::vector<DeviceMessage> messages;
    while (!text.empty()) {
        const std::size_t end = text.find("\n\n") + 2;
        messages.push_back(BlockMessage(text.substr(0, end)));
        text.remove_prefix(end);
    }
    return messages;
}

}  // namespace

DeviceMessage BlockMessage(std::string_view text) {
    DeviceMessage message{.kind = DeviceMessage::Kind::Block,
                          .header = std::string(text.substr(0, text.find(':'))),
                          .lines = {},
                          .bytes = std::string(text)};
    for (text.remove_prefix(text.find('\n') + 1); text != "\n"; text.remove_prefix(text.find('\n') + 1)) {
        const std::string_view line = text.substr(0, text.find('\n'));
        const std::size_t colon = line.find(':');
        message.lines.emplace_back(line.substr(0, colon), line.substr(colon + 2));
    }
    return message;
}

DeviceMessage BlockMessage(const std::string& header, const Lines& lines) {
    return {.kind = DeviceMessage::Kind::Block, .header = header, .lines = lines, .bytes = TextOf(header, lines)};
}

DeviceMessage Acknowledgement(bool isPositive, std::size_t count) {
    DeviceMessage message{
        .kind = DeviceMessage::Kind::Acknowledge, .header = {}, .lines = {}, .bytes = {}, .count = count};
    for (; count > 0; --count) {
        message.bytes += isPositive ? "ACK\n" : "NACK\n";
    }
    return message;
}

DeviceMessage Nonsense(Dice& dice) {
    static const std::array<std::string, 6> nonsense{
        "PING\n\n",
        "\n",
        "\r\n\n",
        "SCOPES:\nWaveform: true\nno colon\n\n",
        "NO SUCH BLOCK:\nGain: 99\nACK\n" + std::string(300, 'x') + "\n\n",
        "DISPLAY:\n" + std::string("\x01\x02\xff\xfe: \x80\n") + "\r\n",
    };
    return {.kind = DeviceMessage::Kind::Nothing, .header = {}, .lines = {}, .bytes = dice.OneOf(nonsense)};
}

const std::vector<DeviceMessage>& GreetingMessages() {
    static const std::vector<DeviceMessage> messages = MessagesIn(Testing::GreetingText());
    return messages;
}

const std::vector<DeviceMessage>& AvailabilityMessages() {
    static const std::vector<DeviceMessage> messages = [] {
        std::string text;
        for (const auto& [header, lines] : Testing::AvailabilityLines()) {
            text += Testing::BlockOf(header, lines);
        }
        return MessagesIn(text);
    }();
    return messages;
}

void Spoil(Dice& dice, DeviceMessage& message) {
    std::string& bytes = message.bytes;
    if (dice.OneIn(3)) {
        static const std::array<std::string, 4> lines{"Bogus: 1\n", "no colon here\n", "Bogus:\n",
                                                      "\x7f\x80\xff: \x01\n"};
        bytes.insert(bytes.find('\n') + 1, dice.OneOf(lines));
    }
    if (dice.OneIn(3)) {
        for (std::size_t at = bytes.find('\n'); at != std::string::npos; at = bytes.find('\n', at + 2)) {
            bytes.insert(at, "\r");
        }
    }
}

}  // namespace Morquil::Testing::Worlds
