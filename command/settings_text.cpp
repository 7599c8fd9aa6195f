#include "command/settings_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace Morquil::Command {
namespace {

// clang-format off
constexpr std::array<std::string_view, 12> playedBlocks = {
    "MORQUIL DEVICE", "VIDEO OUTPUT", "VIDEO PROC AMP", "VIDEO ADJUST", "NOISE REDUCTION", "TEST PATTERN",
    "VIDEO ADVANCED", "ANCILLARY DATA", "GENLOCK", "VARIABLE ASPECT RATIO", "AUDIO", "MODE3D"};

// What is found anywhere in a key of a line that a device does not take, or that no saved file shows.
constexpr std::array<std::string_view, 15> unseenKeys = {
    "Model name", "Software Version", "FPGA Version", "Remote lock",                     // the device's own
    "Signal locked", "last input", "last output",
    "Still frame present", "Still load complete", "Still store complete", "Still preview complete",
    "Reset", "Timecode start", "AudioInPhase", "AudioDDPhase"};                          // commands; phases do not read back
// clang-format on

constexpr std::string_view startSource = "Timecode start source";
constexpr std::string_view programConfig = "Metadata program config";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool IsKeyOf(const SettingsLine& line, const SettingsLine& other) {
    return line.block == other.block && line.key == other.key;
}

std::optional<double> AsNumber(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool good = error == std::errc() && end == text.data() + text.size();
    return good ? std::optional(number) : std::nullopt;
}

// A timecode may have any character between its numbers.
std::string Plain(std::string_view value) {
    std::string plain(value);
    const bool isTimecode = value.size() == 11 && value.find_first_not_of("0123456789:;.") == std::string_view::npos;
    std::replace_if(
        plain.begin(), plain.end(), [&](char c) { return isTimecode && (c == ';' || c == '.'); }, ':');
    return plain;
}

bool IsSameValue(std::string_view left, std::string_view right) {
    const std::optional<double> leftNumber = AsNumber(left);
    const std::optional<double> rightNumber = AsNumber(right);
    if (leftNumber && rightNumber) {
        return std::abs(*leftNumber - *rightNumber) < 1e-6;
    }
    return Plain(left) == Plain(right);
}

}  // namespace

std::vector<SettingsLine> ParseSettings(std::string_view text) {
    std::vector<SettingsLine> lines;
    std::string block;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = Trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t colon = line.find(':');
        if (line.empty()) {
            block.clear();
        } else if (block.empty() && colon + 1 == line.size()) {
            block = line.substr(0, colon);
        } else if (!block.empty() && colon != std::string_view::npos) {
            lines.push_back({block, std::string(line.substr(0, colon)), std::string(Trimmed(line.substr(colon + 1)))});
        }
    }
    return lines;
}

Playback PlaybackOf(const SettingsLine& line) {
    if (std::find(playedBlocks.begin(), playedBlocks.end(), line.block) == playedBlocks.end()) {
        return Playback::NeverPlayed;
    }
    const bool isUnseen = std::any_of(unseenKeys.begin(), unseenKeys.end(), [&line](std::string_view key) {
        return line.key.find(key) != std::string::npos && line.key != startSource;
    });
    return isUnseen || line.key == programConfig ? Playback::Unseen : Playback::Applied;
}

const SettingsLine* FindLine(const std::vector<SettingsLine>& lines, const SettingsLine& line) {
    const auto found =
        std::find_if(lines.rbegin(), lines.rend(), [&line](const SettingsLine& other) { return IsKeyOf(line, other); });
    return found != lines.rend() ? &*found : nullptr;
}

std::vector<SettingsLine> MissingLines(const std::vector<SettingsLine>& wanted,
                                       const std::vector<SettingsLine>& saved) {
    std::vector<SettingsLine> missing;
    for (const SettingsLine& line : wanted) {
        const bool counts = PlaybackOf(line) == Playback::Applied && FindLine(wanted, line) == &line;
        const SettingsLine* const shown = counts ? FindLine(saved, line) : nullptr;
        if (counts && (shown == nullptr || !IsSameValue(line.value, shown->value))) {
            missing.push_back(line);
        }
    }
    return missing;
}

}  // namespace Morquil::Command
