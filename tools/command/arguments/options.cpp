#include "command/arguments/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <map>

#include "command/arguments/exit_code.h"

namespace Morquil::Command {
namespace {

// Called by the shell completion scripts; not shown in any help.
constexpr const char* hiddenCommand = "complete";
constexpr const char* hiddenGroup = "";

constexpr double longestTimeout = 24 * 3600.0;

constexpr const char* footer =
    "Examples:\n"
    "  morquilctl -d 192.168.1.10 status\n"
    "  morquilctl get output.video-mode proc-amp\n"
    "  morquilctl set output.video-mode 1080i50 proc-amp.gain -3\n"
    "  morquilctl ranges 'audio.*'\n"
    "  morquilctl watch input reference.signal-locked\n"
    "\n"
    "Exit codes: 0 done, 1 usage, 2 unreachable, 3 timed out, 4 not applied, 5 connection lost, "
    "130 interrupted.\n"
    "`morquilctl list` shows all properties.";

/// The command line as the parser defines it, and where it stores the results.
struct Line {
    CLI::App app{"Reads, sets and watches a Morquil converter.", "morquilctl"};
    Options options;
    double seconds = 5;
    struct Count {
        int fewest = 0;
        int most = 0;
        std::string words;
    };
    std::map<const CLI::App*, Count> counts;

    Line() {
        app.set_help_flag("-h,--help", "Show this help");
        app.set_version_flag("--version", "morquilctl " MORQUIL_VERSION, "Show the version");
        app.footer(footer);
        app.add_option("-d,--device", options.address, "Address of the device (else MORQUIL_DEVICE, else 127.0.0.1)")
            ->type_name("ADDRESS");
        app.add_option("-t,--timeout", seconds, "How long the command may take, in seconds (5)")->type_name("SECONDS");
        app.add_flag("--json", options.isJson, "Write JSON");
        app.add_flag("--trace", options.isTraced, "Show the library's messages and what it receives on standard error");
        app.require_subcommand(1);
        AddCommands();
    }

    void AddCommands() {
        // clang-format off
        Add("status",     "Show the device, its input and its output", nullptr, "", 0);
        Add("get",        "Show values", "NAME", "A property, the beginning of names, or a pattern", 1);
        Add("set",        "Set values, and wait until the device reports them", "NAME VALUE", "Properties and their values; commands such as timecode.start have none", 1);
        Add("ranges",     "Show what the device accepts now", "NAME", "A property, the beginning of names, or a pattern", 0, true);
        CLI::App* const watch = Add("watch", "Show changes until interrupted", "NAME", "A property, the beginning of names, or a pattern", 0, true);
        watch->add_flag("--wait-reconnect", options.reconnects, "Keep watching when the connection is lost");
        Add("save",       "Write the device's settings to a file", "FILE", "The file; - for standard output", 1, false, 1);
        CLI::App* const load = Add("load", "Play back the settings in a file", "FILE", "The file; - for standard input", 1, false, 1);
        load->add_flag("--partial", options.isPartial, "Also load a file that lacks blocks or their end");
        AddPreset();
        Add("list",       "Show all properties", "NAME", "A property, the beginning of names, or a pattern", 0, true);
        Add("completion", "Write a script that completes the command line", "SHELL", "bash, zsh or fish", 1, false, 1);
        Add(hiddenCommand, "", "WORD", "The words of a command line; the last may be unfinished", 0, true)->group(hiddenGroup);
        // clang-format on
    }

    void AddPreset() {
        CLI::App* const preset = Add("preset", "Save, recall or name presets", nullptr, "", 0);
        preset->require_subcommand(1);
        // clang-format off
        AddTo(*preset, "save",   "Save the settings as a preset",        "NUMBER", "The preset", 1, false, 1);
        AddTo(*preset, "recall", "Recall the settings of a preset",      "NUMBER", "The preset", 1, false, 1);
        AddTo(*preset, "name",   "Show or set the name of a preset",     "NUMBER [NAME]", "The preset, and its new name", 1, false, 2);
        // clang-format on
    }

    CLI::App* Add(const char* name, const char* summary, const char* words, const char* about, int fewest,
                  bool mayBeNone = false, int most = 0) {
        return AddTo(app, name, summary, words, about, fewest, mayBeNone, most);
    }

    /// `most`: 0 for any number of words.
    CLI::App* AddTo(CLI::App& parent, const char* name, const char* summary, const char* words, const char* about,
                    int fewest, bool mayBeNone = false, int most = 0) {
        CLI::App* const command = parent.add_subcommand(name, summary);
        command->fallthrough();
        command->set_help_flag("-h,--help", "Show this help");
        if (words != nullptr) {
            const int limit = most == 0 ? CLI::detail::expected_max_vector_size : most;
            command->add_option("words", options.words, about)->type_name(words)->expected(0, limit);
            counts[command] = {mayBeNone ? 0 : fewest, limit, words};
        }
        return command;
    }

    /// Words after "--" may begin with hyphens and bypass the parser.
    void Take(const std::vector<std::string>& further) {
        options.words.insert(options.words.end(), further.begin(), further.end());
        const CLI::App* chosen = &app;
        for (const CLI::App* command = First(app); command != nullptr; command = First(*command)) {
            chosen = command;
        }
        const Count& count = counts[chosen];
        const int given = static_cast<int>(options.words.size());
        if (given < count.fewest) {
            throw UsageFailure(Chosen() + ": " + count.words + " is missing; see: morquilctl --help");
        }
        if (given > count.most) {
            throw UsageFailure(Chosen() + ": unexpected argument '" + options.words.back() +
                               "'; see: morquilctl --help");
        }
    }

    std::string Chosen() const {
        std::string names;
        for (const CLI::App* command = First(app); command != nullptr; command = First(*command)) {
            names += (names.empty() ? "" : " ") + command->get_name();
        }
        return names;
    }
    static const CLI::App* First(const CLI::App& parent) {
        const auto chosen = parent.get_subcommands();
        return chosen.empty() ? nullptr : chosen.front();
    }
};

std::string OneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

void CheckOptions(const Line& line) {
    if (!(line.seconds > 0) || line.seconds > longestTimeout) {
        throw UsageFailure("--timeout: expected seconds, more than 0 and at most 86400");
    }
    if (line.options.address.empty()) {
        throw UsageFailure("--device: the address is empty");
    }
}

std::vector<OptionForm> OptionsOf(const CLI::App& command) {
    std::vector<OptionForm> options;
    for (const CLI::Option* const option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            const std::vector<std::string>& letters = option->get_snames();
            options.push_back({.name = "--" + name,
                               .summary = option->get_description(),
                               .letter = letters.empty() ? std::string() : letters.front(),
                               .takesValue = option->get_items_expected_max() > 0});
        }
    }
    return options;
}

Grammar GrammarOf(const CLI::App& command) {
    Grammar grammar{command.get_name(), command.get_description(), OptionsOf(command), {}};
    for (const CLI::App* const following : command.get_subcommands(nullptr)) {
        if (following->get_group() != hiddenGroup) {
            grammar.commands.push_back(GrammarOf(*following));
        }
    }
    return grammar;
}

}  // namespace

ParsedLine ParseCommandLine(std::vector<std::string> arguments, const std::string& defaultAddress) {
    Line line;
    line.options.address = defaultAddress;
    const auto mark = std::find(arguments.begin(), arguments.end(), "--");
    const std::vector<std::string> further(mark == arguments.end() ? mark : mark + 1, arguments.end());
    arguments.erase(mark, arguments.end());
    try {
        std::reverse(arguments.begin(), arguments.end());
        line.app.parse(arguments);
    } catch (const CLI::CallForHelp&) {
        return {{}, line.app.help()};
    } catch (const CLI::CallForVersion& version) {
        return {{}, std::string(version.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        throw UsageFailure(OneLine(error.what()) + "; see: morquilctl --help");
    }
    CheckOptions(line);
    line.Take(further);
    line.options.command = line.Chosen();
    line.options.timeout = std::chrono::milliseconds(std::llround(std::ceil(line.seconds * 1000)));
    return {std::move(line.options), {}};
}

Grammar CommandLineGrammar() {
    return GrammarOf(Line().app);
}

}  // namespace Morquil::Command
