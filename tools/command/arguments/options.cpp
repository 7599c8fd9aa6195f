#include "command/arguments/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <map>

#include "command/arguments/command_forms.h"
#include "command/arguments/exit_code.h"
#include "command/arguments/help.h"
#include "properties/suggestion.h"

namespace Morquil::Command {
namespace {

// Called by the shell completion scripts; not shown in any help.
constexpr CommandForm hiddenForm = {.name = "complete", .summary = "", .words = "[WORD]..."};
constexpr const char* hiddenGroup = "";

constexpr double longestTimeout = 24 * 3600.0;

constexpr const char* expectedSeconds = "--timeout: expected seconds, more than 0 and at most 86400";
constexpr const char* seeHelp = "; see: morquilctl --help";

/// The command line as the parser defines it, and where it stores the results.
struct Line {
    CLI::App app{"Reads, sets and watches a Morquil converter.", "morquilctl"};
    Options options;
    double seconds = 5;
    std::map<const CLI::App*, const CommandForm*> forms;

    Line() {
        app.set_help_flag("-h,--help", "Show this help");
        app.set_version_flag("--version", "morquilctl " MORQUIL_VERSION, "Show the version");
        app.add_option("-d,--device", options.devices,
                       "A device: an address, a host name, or a group such as @rack-1; may be repeated (else "
                       "MORQUIL_DEVICE, else 127.0.0.1)")
            ->type_name("ADDRESS")
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        app.add_option("--devices", options.devicesFile, "A file with devices, one on each line")->type_name("FILE");
        app.add_option("-t,--timeout", seconds, "How long the command may take, in seconds (5)")->type_name("SECONDS");
        app.add_flag("--json", options.isJson, "Write JSON");
        app.add_flag("--trace", options.isTraced, "Show the library's messages and what it receives on standard error");
        app.require_subcommand(1);
        for (const CommandForm& form : CommandForms()) {
            Add(form);
        }
        Add(hiddenForm)->group(hiddenGroup);
        AddOptions();
    }

    void AddOptions() {
        Command("get").add_flag("--value", options.isValueOnly, "Write the values alone, one on each line");
        Command("watch").add_flag("--wait-reconnect", options.reconnects, "Keep watching when the connection is lost");
        Command("load").add_flag("--partial", options.isPartial, "Also load a file that lacks blocks or their end");
        for (const char* const name : {"set", "apply", "copy"}) {
            Command(name).add_flag("--dry-run", options.isDryRun, "Check and show the changes, and send nothing");
        }
    }

    CLI::App& Command(const char* name) { return *app.get_subcommand(name); }

    CLI::App* Add(const CommandForm& form) {
        const std::size_t blank = form.name.find(' ');
        CLI::App& parent =
            blank == std::string_view::npos ? app : *app.get_subcommand(std::string(form.name.substr(0, blank)));
        if (&parent != &app) {
            parent.require_subcommand(1);
        }
        CLI::App* const command = parent.add_subcommand(
            std::string(form.name.substr(blank == std::string_view::npos ? 0 : blank + 1)), std::string(form.summary));
        command->fallthrough();
        command->set_help_flag("-h,--help", "Show this help");
        if (!form.words.empty()) {
            const int limit = form.most == 0 ? CLI::detail::expected_max_vector_size : form.most;
            command->add_option("words", options.words)->expected(0, limit);
        }
        forms[command] = &form;
        return command;
    }

    /// The command that was given, or the program itself.
    const CLI::App& Chosen() const {
        const CLI::App* chosen = &app;
        for (const CLI::App* command = First(app); command != nullptr; command = First(*command)) {
            chosen = command;
        }
        return *chosen;
    }
    std::string ChosenName() const {
        const auto form = forms.find(&Chosen());
        return form != forms.end() ? std::string(form->second->name) : "";
    }

    /// Words after "--" may begin with hyphens and bypass the parser.
    void Take(const std::vector<std::string>& further) {
        options.words.insert(options.words.end(), further.begin(), further.end());
        const CommandForm& form = *forms.at(&Chosen());
        const int given = static_cast<int>(options.words.size());
        if (given < form.fewest) {
            throw UsageFailure(ChosenName() + ": " + std::string(form.words) + " is missing; see: morquilctl " +
                               ChosenName() + " --help");
        }
        const bool isLimited = form.words.empty() || form.most != 0;
        if (isLimited && given > form.most) {
            throw UsageFailure(ChosenName() + ": unexpected argument '" + options.words.back() + "'; see: morquilctl " +
                               ChosenName() + " --help");
        }
    }

    static const CLI::App* First(const CLI::App& parent) {
        const auto chosen = parent.get_subcommands();
        return chosen.empty() ? nullptr : chosen.front();
    }
};

void CheckOptions(const Line& line) {
    if (!(line.seconds > 0) || line.seconds > longestTimeout) {
        throw UsageFailure(expectedSeconds);
    }
    if (std::find(line.options.devices.begin(), line.options.devices.end(), "") != line.options.devices.end()) {
        throw UsageFailure("--device: the address is empty");
    }
}

std::vector<OptionForm> OptionsOf(const CLI::App& command) {
    std::vector<OptionForm> options;
    for (const CLI::Option* const option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            const std::vector<std::string>& letters = option->get_snames();
            const bool takesValue = option->get_items_expected_max() > 0;
            options.push_back({.name = "--" + name,
                               .summary = option->get_description(),
                               .letter = letters.empty() ? std::string() : letters.front(),
                               .valueName = takesValue ? option->get_type_name() : std::string(),
                               .takesValue = takesValue});
        }
    }
    return options;
}

Grammar GrammarOf(const Line& line, const CLI::App& command) {
    Grammar grammar{command.get_name(), command.get_description(), OptionsOf(command), {}, {}, {}, {}};
    if (const auto form = line.forms.find(&command); form != line.forms.end()) {
        grammar.words = form->second->words;
        grammar.wordsAbout = form->second->about;
        grammar.examples.assign(form->second->examples.begin(), form->second->examples.end());
    }
    for (const CLI::App* const following : command.get_subcommands(nullptr)) {
        if (following->get_group() != hiddenGroup) {
            grammar.commands.push_back(GrammarOf(line, *following));
        }
    }
    return grammar;
}

Grammar ProgramGrammar(const Line& line) {
    Grammar grammar = GrammarOf(line, line.app);
    for (const char* const name : {"status", "get", "set"}) {
        const auto command = std::find_if(grammar.commands.begin(), grammar.commands.end(),
                                          [name](const Grammar& one) { return one.name == name; });
        grammar.examples.push_back(command->examples.front());
    }
    return grammar;
}

std::string HelpFor(const Line& line, std::size_t width) {
    const Grammar program = ProgramGrammar(line);
    return &line.Chosen() == &line.app ? ProgramHelp(program, width)
                                       : CommandHelp(program, GrammarOf(line, line.Chosen()), line.ChosenName(), width);
}

std::string NearestAmong(const std::string& word, const std::vector<std::string>& known) {
    const std::vector<std::string_view> candidates(known.begin(), known.end());
    const std::string nearest(Properties::Nearest(word, candidates));
    return nearest.empty() ? seeHelp : "; nearest: " + nearest;
}

std::string UnknownOption(const Line& line, const std::string& word) {
    std::vector<std::string> known;
    for (const CLI::App* const app : {&line.Chosen(), &line.app}) {
        for (const OptionForm& option : OptionsOf(*app)) {
            known.push_back(option.name);
        }
    }
    return "'" + word + "' is not an option" + NearestAmong(word, known);
}

/// The first word after the chosen command that is neither an option nor the value of one; empty if there is none.
std::string FirstUnknownWord(const Line& line) {
    for (const std::string& word : line.app.remaining(true)) {
        if (word != "--") {
            return word;
        }
    }
    return {};
}

std::string MissingCommand(const Line& line) {
    const Grammar chosen = GrammarOf(line, line.Chosen());
    const std::string word = FirstUnknownWord(line);
    const std::string before = line.ChosenName().empty() ? "" : line.ChosenName() + ": ";
    if (word.empty()) {
        return before + "a command is missing" + seeHelp;
    }
    std::vector<std::string> known;
    for (const Grammar& command : chosen.commands) {
        known.push_back(command.name);
    }
    return before + "'" + word + "' is not a command" + NearestAmong(word, known);
}

/// What is wrong, without the parser's own words.
std::string ReasonOf(const CLI::ParseError& error, const Line& line) {
    if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
        const bool isTimeout = std::string_view(error.what()).find("--timeout") != std::string_view::npos;
        return isTimeout ? expectedSeconds : std::string("an option has a value that it does not take") + seeHelp;
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        const std::string text = error.what();
        return text.substr(0, text.find(':')) + ": the value is missing" + seeHelp;
    }
    const std::string word = FirstUnknownWord(line);
    if (word.starts_with("-")) {
        return UnknownOption(line, word);
    }
    const bool needsCommand = &line.Chosen() == &line.app || !line.Chosen().get_subcommands(nullptr).empty();
    if (needsCommand) {
        return MissingCommand(line);
    }
    return line.ChosenName() + ": unexpected argument '" + word + "'; see: morquilctl " + line.ChosenName() + " --help";
}

}  // namespace

ParsedLine ParseCommandLine(std::vector<std::string> arguments, std::size_t width) {
    Line line;
    const auto mark = std::find(arguments.begin(), arguments.end(), "--");
    const std::vector<std::string> further(mark == arguments.end() ? mark : mark + 1, arguments.end());
    arguments.erase(mark, arguments.end());
    try {
        std::reverse(arguments.begin(), arguments.end());
        line.app.parse(arguments);
    } catch (const CLI::CallForHelp&) {
        return {{}, HelpFor(line, width)};
    } catch (const CLI::CallForVersion& version) {
        return {{}, std::string(version.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        throw UsageFailure(ReasonOf(error, line));
    }
    CheckOptions(line);
    line.Take(further);
    line.options.command = line.ChosenName();
    line.options.timeout = std::chrono::milliseconds(std::llround(std::ceil(line.seconds * 1000)));
    return {std::move(line.options), {}};
}

Grammar CommandLineGrammar() {
    const Line line;
    return ProgramGrammar(line);
}

}  // namespace Morquil::Command
