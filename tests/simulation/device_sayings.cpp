#include "tests/simulation/device_sayings.h"

#include <array>

#include "tests/device/device_texts.h"
#include "tests/simulation/expected_queue.h"

namespace Morquil::Simulation {

namespace {

std::vector<Saying> SayingsIn(std::string_view text) {
    std::vector<Saying> sayings;
    while (!text.empty()) {
        const std::size_t end = text.find("\n\n") + 2;
        sayings.push_back(BlockSaying(text.substr(0, end)));
        text.remove_prefix(end);
    }
    return sayings;
}

}  // namespace

Saying BlockSaying(std::string_view text) {
    Saying saying{.kind = Saying::Kind::Block,
                  .header = std::string(text.substr(0, text.find(':'))),
                  .lines = {},
                  .bytes = std::string(text)};
    for (text.remove_prefix(text.find('\n') + 1); text != "\n"; text.remove_prefix(text.find('\n') + 1)) {
        const std::string_view line = text.substr(0, text.find('\n'));
        const std::size_t colon = line.find(':');
        saying.lines.emplace_back(line.substr(0, colon), line.substr(colon + 2));
    }
    return saying;
}

Saying BlockSaying(const std::string& header, const Lines& lines) {
    return {.kind = Saying::Kind::Block, .header = header, .lines = lines, .bytes = TextOf(header, lines)};
}

Saying Acknowledgement(bool isPositive, std::size_t count) {
    Saying saying{.kind = Saying::Kind::Acknowledge, .header = {}, .lines = {}, .bytes = {}, .count = count};
    for (; count > 0; --count) {
        saying.bytes += isPositive ? "ACK\n" : "NACK\n";
    }
    return saying;
}

Saying Nonsense(Dice& dice) {
    static const std::array<std::string, 6> nonsense{
        "PING\n\n",
        "\n",
        "\r\n\n",
        "SCOPES:\nWaveform: true\nno colon\n\n",
        "NO SUCH BLOCK:\nGain: 99\nACK\n" + std::string(300, 'x') + "\n\n",
        "DISPLAY:\n" + std::string("\x01\x02\xff\xfe: \x80\n") + "\r\n",
    };
    return {.kind = Saying::Kind::Nothing, .header = {}, .lines = {}, .bytes = dice.OneOf(nonsense)};
}

const std::vector<Saying>& GreetingSayings() {
    static const std::vector<Saying> sayings = SayingsIn(Testing::GreetingText());
    return sayings;
}

const std::vector<Saying>& AvailabilitySayings() {
    static const std::vector<Saying> sayings = [] {
        std::string text;
        for (const auto& [header, lines] : Testing::AvailabilityLines()) {
            text += Testing::BlockOf(header, lines);
        }
        return SayingsIn(text);
    }();
    return sayings;
}

void Spoil(Dice& dice, Saying& saying) {
    std::string& bytes = saying.bytes;
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

}  // namespace Morquil::Simulation
