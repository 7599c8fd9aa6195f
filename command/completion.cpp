#include "command/completion.h"

#include <vector>

#include "command/commands.h"
#include "command/completion_data.h"
#include "command/fish_completion.h"

namespace Morquil::Command {
namespace {

// Bash and zsh share their data: `_morquilctl_values NAME` prints the words of a property, a line each, and the lists
// below are lines, too.
std::string Lines(const std::vector<std::string>& words) {
    std::string lines;
    for (const std::string& word : words) {
        lines += (lines.empty() ? "" : "\n") + word;
    }
    return Quoted(lines);
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
    names.reserve(offered.size());
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
    const std::string valueOptions = JoinedValueOptions(grammar, "|").substr(1);
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
                )sh" +
           valueOptions + R"sh() skip=yes ;;
                -*) ;;
                *) command="$word" ;;
            esac
        fi
        last="$word"
    done
    case "$last" in
        )sh" +
           valueOptions + R"sh() return ;;
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
# From a folder of $fpath this file runs as the function itself.
if [ "${funcstack[1]}" = "_morquilctl" ]; then
    _morquilctl "$@"
else
    compdef _morquilctl morquilctl
fi
)sh";
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
