// save, load.
#include <algorithm>

#include "command/commands/commands.h"
#include "command/commands/settings_files.h"
#include "command/commands/settings_text.h"
#include "command/files/local_file.h"
#include "command/output/rendering.h"

namespace Morquil::Command {
namespace {

// The library reads no more of a settings file either. A device such as /dev/zero has no end.
constexpr std::size_t mostBytes = std::size_t{16} * 1024 * 1024;

constexpr std::string_view addressMark = "{}";

constexpr const char* neverSaved = "a settings file holds no presets, no names and no network settings";

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
    PrintMessage(context.terminal, neverSaved);
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

// The file's name for this device.
std::string FileFor(const Context& context) {
    std::string name = context.options.words.front();
    const std::size_t mark = name.find(addressMark);
    return mark == std::string::npos ? name : name.replace(mark, addressMark.size(), context.options.address);
}

void ExpectWhole(const Context& context, const std::string& file, const std::string& content) {
    const FileShape shape = ShapeOf(content);
    if (!shape.IsWhole() && !context.options.isPartial) {
        throw UsageFailure(file + ": not a whole settings file: " + shape.Damage() +
                           "; with --partial what it holds is loaded");
    }
    if (!shape.IsWhole()) {
        PrintMessage(context.terminal, file + ": not a whole settings file: " + shape.Damage());
    }
}

// What has been checked is what is loaded.
morquil::Outcome Load(const std::vector<SettingsLine>& lines, const Link& link) {
    const TemporaryFile file;
    WriteLocalFile(file.Name(), PlayableText(lines));
    return link.Apply([&] { link.Device().LoadSettingsFile(file.Name()); });
}

[[noreturn]] void ThrowNotApplied(const std::string& file, std::size_t lines, morquil::Result result,
                                  const Link& link) {
    const std::string within = result == morquil::Result::TimedOut ? " within " + link.Until().Text() : "";
    throw Failure(ExitCode::NotApplied, file + ": " + std::to_string(lines) +
                                            (lines == 1 ? " line was" : " lines were") + " not applied" + within);
}

}  // namespace

std::string PresentSettings(const Link& link) {
    const TemporaryFile file;
    try {
        link.Device().SaveSettingsFile(file.Name());
    } catch (const morquil::NotKnown&) {
        throw Failure(ExitCode::ConnectionLost, link.Address() + ": the connection was lost");
    } catch (const morquil::Error&) {
        throw UsageFailure(file.Name() + ": cannot be written; TMPDIR names the folder of temporary files");
    }
    std::string settings = ReadLocalFile(file.Name(), mostBytes);
    if (const FileShape shape = ShapeOf(settings); !shape.IsWhole()) {
        throw UsageFailure(file.Name() + ": was not written as a whole: " + shape.Damage());
    }
    return settings;
}

void SaveSettings(const Context& context) {
    const std::string file = FileFor(context);
    const Link link(context);
    const std::string settings = PresentSettings(link);
    const bool isForAll = context.addresses.size() > 1 && context.options.words.front() == file;
    if (isForAll) {
        throw UsageFailure(file + ": several devices need several files: put {} where the address belongs");
    }
    if (file == standardStream) {
        context.terminal.out(settings);
        return;
    }
    WriteLocalFile(file, settings);
    if (context.options.isJson) {
        PrintJson(context.terminal, {{"address", link.Address()}, {"file", file}});
    } else {
        PrintLine(context.terminal, {"saved to " + file});
    }
}

void LoadSettings(const Context& context) {
    const std::string file = FileFor(context);
    const std::string content = ReadLocalFile(file, mostBytes);
    const std::vector<SettingsLine> wanted = ParseSettings(content);
    if (wanted.empty()) {
        throw UsageFailure(file + ": holds no settings");
    }
    ExpectWhole(context, file, content);
    PrintUnplayedBlocks(context, wanted);
    const Link link(context);
    const morquil::Outcome outcome = Load(wanted, link);
    const std::vector<SettingsLine> missing = MissingLines(wanted, ParseSettings(PresentSettings(link)));
    PrintOutcome(context, wanted, missing);
    if (!missing.empty()) {
        ThrowNotApplied(file, missing.size(), outcome.result, link);
    }
}

}  // namespace Morquil::Command
