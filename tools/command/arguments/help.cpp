#include "command/arguments/help.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "command/text/wrapped.h"

namespace Morquil::Command {
namespace {

using Entry = std::pair<std::string, std::string>;

constexpr std::size_t indent = 2;
constexpr std::size_t gap = 2;
constexpr std::size_t narrowestText = 24;

std::string Blanks(std::size_t count) {
    return std::string(count, ' ');
}

// A list with its explanations side by side, or below each other where there is no room.
std::string List(const std::string& title, const std::vector<Entry>& entries, std::size_t width) {
    std::size_t longest = 0;
    for (const Entry& entry : entries) {
        longest = std::max(longest, entry.first.size());
    }
    const bool isNarrow = width < indent + longest + gap + narrowestText;
    const std::size_t column = isNarrow ? 3 * indent : indent + longest + gap;
    std::string text = entries.empty() ? "" : "\n" + title + ":\n";
    for (const auto& [name, about] : entries) {
        std::string line = Blanks(indent) + name;
        if (isNarrow) {
            text += line + "\n";
            line.clear();
        }
        for (const std::string& part : Wrapped(about, std::max(width, column + 1) - column)) {
            text += line + Blanks(column - line.size()) + part + "\n";
            line.clear();
        }
    }
    return text;
}

std::vector<Entry> EntriesOf(const std::vector<OptionForm>& options) {
    std::vector<Entry> entries;
    for (const OptionForm& option : options) {
        const std::string letter = option.letter.empty() ? "" : "-" + option.letter + ", ";
        const std::string value = option.valueName.empty() ? "" : " " + option.valueName;
        entries.emplace_back(letter + option.name + value, option.summary);
    }
    return entries;
}

std::vector<Entry> EntriesOf(const std::vector<Grammar>& commands) {
    std::vector<Entry> entries;
    for (const Grammar& command : commands) {
        entries.emplace_back(command.name, command.summary);
    }
    return entries;
}

std::string Examples(const Grammar& grammar) {
    std::string text = grammar.examples.empty() ? "" : "\nExamples:\n";
    for (const std::string& example : grammar.examples) {
        text += Blanks(indent) + example + "\n";
    }
    return text;
}

std::string Paragraph(const std::string& paragraph, std::size_t width) {
    std::string text;
    for (const std::string& line : Wrapped(paragraph, width)) {
        text += line + "\n";
    }
    return text;
}

bool IsAmong(const OptionForm& option, const std::vector<OptionForm>& options) {
    return std::any_of(options.begin(), options.end(),
                       [&option](const OptionForm& other) { return other.name == option.name; });
}

}  // namespace

std::string ProgramHelp(const Grammar& program, std::size_t width) {
    return "Usage: morquilctl [OPTION]... COMMAND [WORD]...\n\n" + Paragraph(program.summary, width) +
           List("Commands", EntriesOf(program.commands), width) + List("Options", EntriesOf(program.options), width) +
           Examples(program) + "\n" +
           Paragraph(
               "Exit codes: 0 done, 1 usage, 2 unreachable, 3 timed out, 4 not applied, 5 connection lost, 130 "
               "interrupted.",
               width) +
           Paragraph("`morquilctl COMMAND --help` explains a command, `morquilctl list` shows all properties.", width);
}

std::string CommandHelp(const Grammar& program, const Grammar& command, const std::string& name, std::size_t width) {
    std::vector<OptionForm> others;
    std::copy_if(
        program.options.begin(), program.options.end(), std::back_inserter(others),
        [&](const OptionForm& option) { return option.name != "--version" && !IsAmong(option, command.options); });
    const std::string words = !command.commands.empty() ? " COMMAND" : command.words.empty() ? "" : " " + command.words;
    const std::vector<Entry> arguments =
        command.words.empty() ? std::vector<Entry>() : std::vector<Entry>{{command.words, command.wordsAbout}};
    return "Usage: morquilctl [OPTION]... " + name + words + "\n\n" + Paragraph(command.summary + ".", width) +
           List("Arguments", arguments, width) + List("Commands", EntriesOf(command.commands), width) +
           List("Options", EntriesOf(command.options), width) +
           List("Options of every command", EntriesOf(others), width) + Examples(command);
}

}  // namespace Morquil::Command
