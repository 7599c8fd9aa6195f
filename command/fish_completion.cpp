#include "command/fish_completion.h"

#include "command/completion_data.h"

namespace Morquil::Command {
namespace {

std::string FishLine(const std::string& condition, const std::string& words) {
    return "complete -c morquilctl -n " + Quoted(condition) + " -f -a " + words + "\n";
}

// Fish takes the words of an argument apart at blanks; one per line of a command's output they stay whole.
std::string FishWords(const std::vector<std::string>& words) {
    std::string arguments;
    for (const std::string& word : words) {
        arguments += " \"" + word + "\"";
    }
    return Quoted("(printf '%s\\n'" + arguments + ")");
}

std::string FishFunctions(const Grammar& grammar) {
    return R"sh(# Prints the command of the line, if it has one already.
function __morquilctl_command
    set -l words (commandline -opc)
    set -e words[1]
    set -l skip no
    for word in $words
        if test $skip = yes
            set skip no
        else if contains -- $word)sh" +
           JoinedValueOptions(grammar, " ") + R"sh(
            set skip yes
        else if not string match -q -- '-*' $word
            echo $word
            return
        end
    end
    echo none
end
function __morquilctl_in
    contains -- (__morquilctl_command) $argv
end
function __morquilctl_behind
    contains -- (commandline -opc)[-1] $argv
end
)sh";
}

std::string FishOption(const Offered& option) {
    return "complete -c morquilctl" + (option.letter.empty() ? "" : " -s " + option.letter) + " -l " +
           option.name.substr(2) + (option.takesValue ? " -x" : "") + " -d " + Quoted(option.summary) + "\n";
}

std::string FishCommand(const Offered& command) {
    std::string lines = FishLine("__morquilctl_in none", command.name + " -d " + Quoted(command.summary));
    if (!command.words.empty()) {
        lines += FishLine("__morquilctl_in " + command.name, FishWords(command.words));
    }
    return lines;
}

// The names that `set` takes are not offered where a value is due.
std::string FishProperties() {
    std::string values;
    std::string withWords;
    std::string names;
    for (const Json& property : DescribeProperties()) {
        const std::string name = property.at("name");
        const std::string about = name + " -d " + Quoted(property.at("summary").get<std::string>());
        const std::vector<std::string> words = WordsOf(property);
        if (property.at("readable")) {
            names += FishLine("__morquilctl_in get ranges watch list", about);
        }
        if (property.at("writable")) {
            names += FishLine("__morquilctl_in set; and not __morquilctl_behind $__morquilctl_worded", about);
        }
        if (property.at("writable") && !words.empty()) {
            withWords += " " + name;
            values += FishLine("__morquilctl_in set; and __morquilctl_behind " + name, FishWords(words));
        }
    }
    return "set -g __morquilctl_worded" + withWords + "\n" + values + names;
}

}  // namespace

std::string FishScript() {
    const Grammar grammar = CommandLineGrammar();
    std::string script =
        "# Completes morquilctl in fish: morquilctl completion fish | source\n" + FishFunctions(grammar);
    for (const Offered& command : grammar.commands) {
        script += FishCommand(command);
    }
    for (const Offered& option : grammar.options) {
        script += FishOption(option);
    }
    return script + FishProperties() + "complete -c morquilctl -n '__morquilctl_in save load' -F\n" +
           FishLine("__morquilctl_in completion", "'bash zsh fish'");
}

}  // namespace Morquil::Command
