#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Command {

/// One line of a settings file, and the block that it stands in.
struct SettingsLine {
    std::string block;
    std::string key;
    std::string value;
};

/// The lines of a settings file: blocks that begin with "NAME:" and end with an empty line. What has no such form is
/// left out.
std::vector<SettingsLine> ParseSettings(std::string_view text);

/// What becomes of a line when the file is played back.
enum class Playback {
    Applied,      // the device gets it, and a saved file shows it afterwards
    Unseen,       // the device may get it, but it is a command, the device's own, or not shown by a saved file
    NeverPlayed,  // stands in a block that is never played back
};
Playback PlaybackOf(const SettingsLine& line);

/// The lines of `wanted` that are to be seen in a saved file, and are not in `saved`, or with another value. Of lines
/// with the same key the last one counts.
std::vector<SettingsLine> MissingLines(const std::vector<SettingsLine>& wanted, const std::vector<SettingsLine>& saved);

/// The value that `lines` have for the key of `line`; null when there is none.
const SettingsLine* FindLine(const std::vector<SettingsLine>& lines, const SettingsLine& line);

}  // namespace Morquil::Command
