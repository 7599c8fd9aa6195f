// save, load.
#include <filesystem>
#include <fstream>
#include <random>

#include "command/commands/commands.h"
#include "command/commands/settings_text.h"
#include "command/output/rendering.h"

namespace Morquil::Command {
namespace {

// The library writes a new file for each check, so not too often.
constexpr std::chrono::milliseconds saveInterval{40};
// The library reads no more of a settings file either. A device such as /dev/zero has no end.
constexpr std::size_t mostBytes = std::size_t{16} * 1024 * 1024;

std::filesystem::path PathOf(const std::string& text) {
    return {std::u8string(text.begin(), text.end())};
}

std::string TextOf(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::string ReadFile(const std::string& name) {
    std::error_code error;
    std::ifstream file(PathOf(name), std::ios::binary);
    if (std::filesystem::is_directory(PathOf(name), error) || !file) {
        throw UsageFailure(name + ": cannot be read");
    }
    std::string content(mostBytes + 1, '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (file.bad()) {
        throw UsageFailure(name + ": cannot be read");
    }
    content.resize(static_cast<std::size_t>(file.gcount()));
    if (content.size() > mostBytes) {
        throw UsageFailure(name + ": is too large for a settings file");
    }
    return content;
}

/// A file name unique to this process; the file is removed at the end.
class TemporaryFile {
public:
    TemporaryFile() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                ("morquilctl-" + std::to_string(random()) + std::to_string(random()) + ".txt");
    }
    ~TemporaryFile() {
        std::error_code error;
        std::filesystem::remove(path_, error);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string Name() const { return TextOf(path_); }

private:
    std::filesystem::path path_;
};

/// Throws: Failure with ConnectionLost, or with Usage if the file cannot be written; an existing file is then
/// unchanged.
void SaveTo(const std::string& file, const Link& link) {
    try {
        link.Device().SaveSettingsFile(file);
    } catch (const morquil::NotKnown&) {
        throw Failure(ExitCode::ConnectionLost, link.Address() + ": the connection was lost");
    } catch (const morquil::Error&) {
        throw UsageFailure(file + ": cannot be written");
    }
}

std::vector<SettingsLine> PresentSettings(const Link& link) {
    const TemporaryFile file;
    SaveTo(file.Name(), link);
    return ParseSettings(ReadFile(file.Name()));
}

void PrintUnplayedBlocks(const Context& context, const std::vector<SettingsLine>& lines) {
    std::vector<std::string> blocks;
    for (const SettingsLine& line : lines) {
        const bool isNew = blocks.empty() || blocks.back() != line.block;
        if (isNew && PlaybackOf(line) == Playback::NeverPlayed) {
            blocks.push_back(line.block);
        }
    }
    std::string names;
    for (const std::string& block : blocks) {
        names += (names.empty() ? "" : ", ") + block;
    }
    if (!blocks.empty()) {
        PrintMessage(context.terminal, "these blocks are never played back: " + names);
    }
}

// Checks what the device has reported until nothing is missing or the time is up.
std::vector<SettingsLine> AwaitLines(const Link& link, const std::vector<SettingsLine>& wanted) {
    std::vector<SettingsLine> missing = MissingLines(wanted, PresentSettings(link));
    while (!missing.empty() && !link.Until().IsOver()) {
        const Clock::time_point next = std::min(Clock::now() + saveInterval, link.Until().time);
        link.Await(next, [] { return false; });
        missing = MissingLines(wanted, PresentSettings(link));
    }
    return missing;
}

Json AsJson(const std::vector<SettingsLine>& lines) {
    Json rows = Json::array();
    for (const SettingsLine& line : lines) {
        rows.push_back({{"block", line.block}, {"key", line.key}, {"value", line.value}});
    }
    return rows;
}

void PrintOutcome(const Context& context, const std::vector<SettingsLine>& wanted,
                  const std::vector<SettingsLine>& missing) {
    if (context.options.isJson) {
        PrintJson(context.terminal, {{"file", context.options.words.front()}, {"notApplied", AsJson(missing)}});
        return;
    }
    std::vector<Row> rows;
    rows.reserve(missing.size());
    for (const SettingsLine& line : missing) {
        rows.push_back({Cell("not applied", Style::Bad), line.block, line.key, line.value});
    }
    PrintTable(context.terminal, rows);
    const auto seen = std::count_if(wanted.begin(), wanted.end(),
                                    [](const SettingsLine& line) { return PlaybackOf(line) == Playback::Applied; });
    if (missing.empty()) {
        PrintLine(context.terminal,
                  {"loaded " + std::to_string(seen) + " settings from " + context.options.words.front()});
    }
}

}  // namespace

void SaveSettings(const Context& context) {
    const std::string& file = context.options.words.front();
    const Link link(context);
    SaveTo(file, link);
    if (context.options.isJson) {
        PrintJson(context.terminal, {{"address", link.Address()}, {"file", file}});
    } else {
        PrintLine(context.terminal, {"saved to " + file});
    }
}

void LoadSettings(const Context& context) {
    const std::string& file = context.options.words.front();
    const std::vector<SettingsLine> wanted = ParseSettings(ReadFile(file));
    if (wanted.empty()) {
        throw UsageFailure(file + ": holds no settings");
    }
    PrintUnplayedBlocks(context, wanted);
    const Link link(context);
    link.Device().LoadSettingsFile(file);
    const std::vector<SettingsLine> missing = AwaitLines(link, wanted);
    PrintOutcome(context, wanted, missing);
    if (!missing.empty()) {
        throw Failure(ExitCode::NotApplied, file + ": " + std::to_string(missing.size()) +
                                                " lines were not applied within " + link.Until().Text());
    }
}

}  // namespace Morquil::Command
