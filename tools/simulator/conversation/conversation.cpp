#include "simulator/conversation/conversation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <map>
#include <optional>

#include "simulator/text/escaped_text.h"
#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {

namespace {

using Kind = ConversationEvent::Kind;

struct KindWord {
    Kind kind;
    std::string_view word;
    bool hasText;
    std::string_view meaning;
};
constexpr std::array<KindWord, 5> kindWords{{
    {Kind::HostConnects, "connects", false, "the host has connected"},
    {Kind::HostSays, "host", true, "the host sent TEXT"},
    {Kind::DeviceSays, "device", true, "the device sent TEXT"},
    {Kind::DeviceHangsUp, "hangs-up", false, "the device ended the connection"},
    {Kind::HostLeaves, "leaves", false, "the host ended the connection"},
}};

std::string_view TakeWord(std::string_view& rest) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    const std::string_view word = rest.substr(0, end);
    rest = Trimmed(rest.substr(end));
    return word;
}

template <class Number>
bool TakeNumber(std::string_view& rest, Number& number) {
    const std::string_view word = TakeWord(rest);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && end == word.data() + word.size() && !word.empty();
}

std::string AllWords() {
    std::string words;
    for (const KindWord& known : kindWords) {
        words += " " + std::string(known.word);
    }
    return words;
}

/// Parses a line that is neither blank nor a comment.
/// Returns: what is wrong with it, or an empty text.
std::string ReadEvent(std::string_view line, ConversationEvent& event) {
    std::string_view rest = line;
    std::uint32_t time = 0;  // 49 days
    if (!TakeNumber(rest, time) || !TakeNumber(rest, event.host) || event.host == 0) {
        return "expected MILLISECONDS HOST EVENT, for example: 250 1 host \"PING\\n\\n\"";
    }
    event.time = std::chrono::milliseconds(time);
    const std::string_view word = TakeWord(rest);
    const auto* const found =
        std::find_if(kindWords.begin(), kindWords.end(), [&](const KindWord& known) { return known.word == word; });
    if (found == kindWords.end()) {
        return "\"" + std::string(word) + "\" is not an event; events are" + AllWords();
    }
    event.kind = found->kind;
    const std::optional<std::string> text = found->hasText ? Unescaped(rest) : std::nullopt;
    if (found->hasText && (!text || text->empty())) {
        return "expected a text in quotes after \"" + std::string(word) + "\"";
    }
    if (!found->hasText && !rest.empty()) {
        return "expected nothing after \"" + std::string(word) + "\"";
    }
    event.text = text.value_or(std::string());
    return {};
}

/// Checks that times do not go back, and that each host sends and receives only while it is connected.
class OrderWatch {
public:
    /// Returns: what is wrong, or an empty text.
    std::string Problem(const ConversationEvent& event) {
        if (event.time < latest_) {
            return "times must not go back";
        }
        latest_ = event.time;
        bool& connected = connected_[event.host];
        if (connected == (event.kind == Kind::HostConnects)) {
            return "host " + std::to_string(event.host) + (connected ? " is connected already" : " is not connected");
        }
        connected = event.kind != Kind::DeviceHangsUp && event.kind != Kind::HostLeaves;
        return {};
    }

private:
    std::chrono::milliseconds latest_{0};
    std::map<unsigned, bool> connected_;
};

}  // namespace

std::string ConversationHeading() {
    std::string heading =
        "# A conversation, recorded by morquil-sim. Each line: MILLISECONDS HOST EVENT [\"TEXT\"]\n"
        "#   MILLISECONDS  since the start of the program\n"
        "#   HOST          hosts are numbered in the order in which they connected\n"
        "#   EVENT         what happened:\n";
    for (const KindWord& word : kindWords) {
        std::string name(word.word);
        name.resize(std::max<std::size_t>(name.size(), 10), ' ');
        heading += "#     " + name + std::string(word.meaning) + "\n";
    }
    return heading +
           "#   TEXT          the bytes, as a C string literal: \\n, \\r, \\t, \\\", \\\\ and octal \\000\n"
           "# Blank lines and lines that start with # are ignored.\n";
}

std::string ConversationLine(const ConversationEvent& event) {
    const auto* const known =
        std::find_if(kindWords.begin(), kindWords.end(), [&](const KindWord& word) { return word.kind == event.kind; });
    std::string line =
        std::to_string(event.time.count()) + " " + std::to_string(event.host) + " " + std::string(known->word);
    if (known->hasText) {
        line += " " + Escaped(event.text);
    }
    return line + "\n";
}

ConversationReading ReadConversation(std::string_view text) {
    ConversationReading reading;
    OrderWatch order;
    std::size_t number = 0;
    ForEachLine(text, [&](std::string_view lineText) {
        ++number;
        const std::string_view line = Trimmed(lineText);
        if (line.empty() || line.starts_with('#') || !reading.error.empty()) {
            return;
        }
        ConversationEvent event;
        std::string error = ReadEvent(line, event);
        if (error.empty()) {
            error = order.Problem(event);
        }
        if (error.empty()) {
            reading.events.push_back(std::move(event));
        } else {
            reading.error = "line " + std::to_string(number) + ": " + error;
        }
    });
    if (!reading.error.empty()) {
        reading.events.clear();
    }
    return reading;
}

}  // namespace Morquil::Simulator
