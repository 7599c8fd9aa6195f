#include "simulator/wire_text.h"

#include <algorithm>
#include <array>

#include "protocol/ascii.h"
#include "protocol/blocks/all.h"
#include "simulator/text_lines.h"

namespace Morquil::Simulator {

namespace {

bool IsPhase(std::string_view key) {
    return StartsIgnoringCase(key, "AudioInPhase") || StartsIgnoringCase(key, "AudioDDPhase");
}

std::string PhaseAsNumber(std::string_view line) {
    const KeyAndValue parts = SplitLine(line);
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

bool IsTimecode(std::string_view text) {
    std::uint32_t digits = 0;
    return ParseTimecode(text, digits);
}

/// The number that stands for no transition setting is read like any other, and then there is none.
bool IsTransitionSetting(std::string_view text) {
    std::int32_t number = 0;
    return !ValueReader(text).Read(number) || number != VideoOutputChangeSet::noTransitionSetting;
}

/// A key whose reader passes over bad values in silence.
struct SilentKey {
    std::string_view block;
    std::string_view key;
    bool (*takes)(std::string_view value);
};
constexpr std::array<SilentKey, 3> silentKeys{
    SilentKey{AncillaryDataChangeSet::block.header.name, "Timecode generate value", &IsTimecode},
    SilentKey{AncillaryDataChangeSet::block.header.name, "Timecode jam sync value", &IsTimecode},
    SilentKey{VideoOutputChangeSet::block.header.name, "Transition setting", &IsTransitionSetting}};

}  // namespace

std::string BreakLongLines(std::string_view text) {
    std::string broken;
    ForEachLine(text, [&](std::string_view line) {
        if (line.size() <= longestLine) {
            broken.append(line).append("\n");
            return;
        }
        const KeyAndValue parts = SplitLine(line);
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

std::string LineFromHost(std::string_view block, std::string_view line) {
    const bool mayHoldPhases = EqualsIgnoringCase(block, AudioChangeSet::block.header.name);
    return mayHoldPhases ? PhaseAsNumber(line) : std::string(line);
}

bool IsSilentlyLost(std::string_view block, const KeyAndValue& line) {
    return std::any_of(silentKeys.begin(), silentKeys.end(), [&](const SilentKey& silent) {
        return EqualsIgnoringCase(block, silent.block) && EqualsIgnoringCase(line.key, silent.key) &&
               !silent.takes(line.value);
    });
}

}  // namespace Morquil::Simulator
