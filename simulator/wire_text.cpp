#include "simulator/wire_text.h"

#include <array>

#include "protocol/ascii.h"
#include "simulator/text_lines.h"

namespace Morquil::Simulator {

namespace {

/// The line's text up to its colon, and what follows the colon and the blank behind it.
struct KeyAndValue {
    std::string_view key;
    std::string_view value;
};

KeyAndValue Split(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
        return {line, {}};
    }
    const std::size_t value = line.find_first_not_of(' ', colon + 1);
    return {line.substr(0, colon), value == std::string_view::npos ? std::string_view() : line.substr(value)};
}

bool IsPhase(std::string_view key) {
    return StartsIgnoringCase(key, "AudioInPhase") || StartsIgnoringCase(key, "AudioDDPhase");
}

std::string PhaseAsNumber(std::string_view line) {
    const KeyAndValue parts = Split(line);
    if (!IsPhase(parts.key) || (parts.value != "true" && parts.value != "false")) {
        return std::string(line);
    }
    return std::string(parts.key) + (parts.value == "true" ? ": 1" : ": 0");
}

/// Takes as many words as fit into one line with the key in front; returns the rest.
std::string_view AppendListLine(std::string& text, std::string_view key, std::string_view words) {
    const std::size_t room = longestLine - key.size() - 2;
    const std::size_t end = words.size() <= room ? words.size() : words.rfind(' ', room);
    if (end == std::string_view::npos) {
        text.append(key).append(": ").append(words.substr(0, room)).append("\n");
        return {};
    }
    text.append(key).append(": ").append(words.substr(0, end)).append("\n");
    return end < words.size() ? words.substr(end + 1) : std::string_view();
}

/// Taken from hosts, never reported by devices, and therefore no key of the device's reader.
struct SilentKey {
    std::string_view header;
    std::string_view key;
};
constexpr std::array<SilentKey, 2> silentKeys{SilentKey{"AUDIO", "Metadata program config"},
                                              SilentKey{"ALIGN", "ResetValues"}};

}  // namespace

std::string BreakLongLines(std::string_view text) {
    std::string broken;
    ForEachLine(text, [&](std::string_view line) {
        if (line.size() <= longestLine) {
            broken.append(line).append("\n");
            return;
        }
        const KeyAndValue parts = Split(line);
        for (std::string_view words = parts.value; !words.empty();) {
            words = AppendListLine(broken, parts.key, words);
        }
    });
    return broken;
}

std::string PhasesAsNumbers(std::string_view text) {
    std::string rewritten;
    ForEachLine(text, [&](std::string_view line) { rewritten.append(PhaseAsNumber(line)).append("\n"); });
    return rewritten;
}

std::string LineFromHost(std::string_view header, std::string_view line) {
    const std::string_view block = header.ends_with(':') ? header.substr(0, header.size() - 1) : header;
    const std::string_view key = Split(line).key;
    for (const SilentKey& silent : silentKeys) {
        if (EqualsIgnoringCase(block, silent.header) && EqualsIgnoringCase(key, silent.key)) {
            return {};
        }
    }
    const bool mayHoldPhases = EqualsIgnoringCase(block, "AUDIO");
    return (mayHoldPhases ? PhaseAsNumber(line) : std::string(line)) + "\n";
}

}  // namespace Morquil::Simulator
