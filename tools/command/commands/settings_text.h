#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Command {

/// One line of a settings file, and the block that contains it.
struct SettingsLine {
    std::string block;
    std::string key;
    std::string value;
};

/// Returns the lines of a settings file. Its blocks begin with "NAME:" and end with an empty line; anything else is
/// left out.
std::vector<SettingsLine> ParseSettings(std::string_view text);

/// How much of a settings file there is.
struct FileShape {
    std::vector<std::string> missing;     // blocks that every saved file holds, but this one does not
    std::optional<std::string> cutBlock;  // the block in which it ends; a saved file ends between blocks

    bool IsWhole() const { return missing.empty() && !cutBlock; }
    /// "it ends within AUDIO, and lacks MORQUIL DEVICE".
    std::string Damage() const;
};
FileShape ShapeOf(std::string_view text);

/// What happens to a line when the file is played back.
enum class Playback {
    Applied,      // the device receives it, and a saved file shows it afterwards
    Unseen,       // the device may receive it, but it is a command or not in a saved file
    Ignored,      // is an observation: the device ignores what it receives
    NeverPlayed,  // is in a block that is never played back
};
Playback PlaybackOf(const SettingsLine& line);

/// A settings file with the lines that a device may receive: those that it would ignore, and would never report back,
/// are left out.
std::string PlayableText(const std::vector<SettingsLine>& lines);

/// The lines of `wanted` that a saved file should show, but that `saved` lacks or has with another value. Of lines with
/// the same key the last one counts.
std::vector<SettingsLine> MissingLines(const std::vector<SettingsLine>& wanted, const std::vector<SettingsLine>& saved);

/// The value in `lines` for the key of `line`; null if it has none.
const SettingsLine* FindLine(const std::vector<SettingsLine>& lines, const SettingsLine& line);

}  // namespace Morquil::Command
