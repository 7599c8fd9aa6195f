#include "command/completion.h"

#include <vector>

#include "command/commands.h"
#include "command/description.h"
#include "command/options.h"

namespace Morquil::Command {
namespace {

// The three scripts share their data: `_morquilctl_values NAME` prints the words of a property, a line each, and the
// lists below are lines, too. All shells here understand a text in single quotes.
std::string Quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

std::string Lines(const std::vector<std::string>& words) {
    std::string lines;
    for (const std::string& word : words) {
        lines += (lines.empty() ? "" : "\n") + word;
    }
    return Quoted(lines);
}

std::vector<std::string> WordsOf(const Json& property) {
    return property.value("words", std::vector<std::string>());
}

// The names of the properties for which `ability`, "readable" or "writable", holds.
std::string Names(const char* ability) {
    std::vector<std::string> names;
    for (const Json& property : DescribeProperties()) {
        if (property.at(ability)) {
            names.push_back(property.at("name"));
        }
    }
    return Lines(names);
}

std::string NamesOf(const std::vector<Offered>& offered) {
    std::vector<std::string> names;
    for (const Offered& one : offered) {
        names.push_back(one.name);
    }
    return Lines(names);
}

// "name) printf ... ;;" for bash and zsh.
std::string ValueCases() {
    std::string cases;
    for (const Json& property : DescribeProperties()) {
        const std::vector<std::string> words = WordsOf(property);
        if (property.at("writable") && !words.empty()) {
            cases += "        " + property.at("name").get<std::string>() + ") printf '%s\\n' " + Lines(words) + " ;;\n";
        }
    }
    return cases;
}

std::string SharedFunctions(const Grammar& grammar) {
    std::string presets;
    for (const Offered& command : grammar.commands) {
        presets = command.name == "preset" ? Lines(command.words) : presets;
    }
    return "_morquilctl_commands=" + NamesOf(grammar.commands) + "\n_morquilctl_options=" + NamesOf(grammar.options) +
           "\n_morquilctl_presets=" + presets + "\n_morquilctl_readable=" + Names("readable") +
           "\n_morquilctl_writable=" + Names("writable") + "\n_morquilctl_values() {\n    case \"$1\" in\n" +
           ValueCases() + R"sh(    esac
}
# Prints what may follow: the words of the line so far, the command first; files are "<file>".
_morquilctl_candidates() {
    command=
    last=
    skip=
    for word in "$@"; do
        if [ -n "$skip" ]; then
            skip=
        elif [ -z "$command" ]; then
            case "$word" in
                -d|--device|-t|--timeout) skip=yes ;;
                -*) ;;
                *) command="$word" ;;
            esac
        fi
        last="$word"
    done
    case "$last" in
        -d|--device|-t|--timeout) return ;;
    esac
    case "$command" in
        "") printf '%s\n' "$_morquilctl_commands" "$_morquilctl_options" ;;
        set)
            values="$(_morquilctl_values "$last")"
            if [ -n "$values" ]; then
                printf '%s\n' "$values"
            else
                printf '%s\n' "$_morquilctl_writable"
            fi ;;
        get|ranges|watch|list) printf '%s\n' "$_morquilctl_readable" "$_morquilctl_options" ;;
        preset) printf '%s\n' "$_morquilctl_presets" ;;
        save|load) printf '%s\n' "<file>" ;;
        completion) printf '%s\n' bash zsh fish ;;
        *) printf '%s\n' "$_morquilctl_options" ;;
    esac
}
)sh";
}

std::string BashScript() {
    return "# Completes morquilctl in bash: source <(morquilctl completion bash)\n" +
           SharedFunctions(CommandLineGrammar()) +
           R"sh(_morquilctl() {
    local current="${COMP_WORDS[COMP_CWORD]}" candidate command last skip word values
    COMPREPLY=()
    while IFS= read -r candidate; do
        if [[ "$candidate" == "<file>" ]]; then
            compopt -o default
        elif [[ "$candidate" == "$current"* ]]; then
            COMPREPLY+=("$(printf '%q' "$candidate")")
        fi
    done < <(_morquilctl_candidates "${COMP_WORDS[@]:1:COMP_CWORD-1}")
}
complete -F _morquilctl morquilctl
)sh";
}

std::string ZshScript() {
    return "#compdef morquilctl\n# Completes morquilctl in zsh: source <(morquilctl completion zsh)\n" +
           SharedFunctions(CommandLineGrammar()) + R"sh(_morquilctl() {
    local -a candidates
    candidates=("${(@f)$(_morquilctl_candidates "${(@)words[2,CURRENT-1]}")}")
    if [[ "${candidates[1]}" == "<file>" ]]; then
        _files
    else
        compadd -- "${candidates[@]}"
    fi
}
compdef _morquilctl morquilctl
)sh";
}

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

std::string FishScript() {
    const Grammar grammar = CommandLineGrammar();
    std::string script = "# Completes morquilctl in fish: morquilctl completion fish | source\n";
    for (const Offered& command : grammar.commands) {
        script += FishLine("__fish_use_subcommand", command.name + " -d " + Quoted(command.summary));
        if (!command.words.empty()) {
            script += FishLine("__fish_seen_subcommand_from " + command.name, FishWords(command.words));
        }
    }
    for (const Offered& option : grammar.options) {
        script += "complete -c morquilctl -l " + option.name.substr(2) + " -d " + Quoted(option.summary) + "\n";
    }
    for (const Json& property : DescribeProperties()) {
        const std::string name = property.at("name");
        const std::string about = name + " -d " + Quoted(property.at("summary").get<std::string>());
        if (property.at("readable")) {
            script += FishLine("__fish_seen_subcommand_from get ranges watch list", about);
        }
        if (property.at("writable")) {
            script += FishLine("__fish_seen_subcommand_from set", about);
            const std::vector<std::string> words = WordsOf(property);
            if (!words.empty()) {
                script += FishLine("test (commandline -opc)[-1] = " + name, FishWords(words));
            }
        }
    }
    script += "complete -c morquilctl -n '__fish_seen_subcommand_from save load' -F\n";
    return script + FishLine("__fish_seen_subcommand_from completion", "'bash zsh fish'");
}

}  // namespace

std::string CompletionScript(std::string_view shell) {
    if (shell == "bash") {
        return BashScript();
    }
    if (shell == "zsh") {
        return ZshScript();
    }
    if (shell == "fish") {
        return FishScript();
    }
    throw UsageFailure("completion: '" + std::string(shell) +
                       "' is not a shell that is known; they are bash, zsh and fish");
}

void WriteCompletion(const Context& context) {
    context.terminal.out(CompletionScript(context.options.words.front()));
}

}  // namespace Morquil::Command
